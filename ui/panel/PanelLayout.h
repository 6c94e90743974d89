// The measures that the sections share, in logical pixels, and how a layout takes them on.
#pragma once

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace bonkora::panelLayout {

inline constexpr int defaultSpacing = 8;
inline constexpr int sidePadding = 14;

template <typename Layout>
Layout* padded(Layout* layout, int horizontal, int vertical, int spacing = defaultSpacing) {
    layout->setContentsMargins(horizontal, vertical, horizontal, vertical);
    layout->setSpacing(spacing);
    return layout;
}

}  // namespace bonkora::panelLayout
