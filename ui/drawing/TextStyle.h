// TextStyle: the named text styles of the panel. Sizes and line heights are logical pixels.
// Values; main thread (fonts are Qt's).
#pragma once

#include <QFont>

namespace bonkora {

struct TextStyle {
    int size;
    int lineHeight;
    bool isMonospaced;
    QFont::Weight weight = QFont::Normal;

    constexpr TextStyle monospaced() const { return {size, lineHeight, true, weight}; }
    constexpr TextStyle weighing(QFont::Weight other) const {
        return {size, lineHeight, isMonospaced, other};
    }

    QFont font() const;
    // The same size in the colour emoji font, where there is one. Emoji are always drawn with a
    // font of their own: left to substitution, some come out of a text font in black.
    QFont emojiFont() const;
};

namespace textStyle {

// The platform's sizes of these styles.
inline constexpr TextStyle title2{17, 22, false};
inline constexpr TextStyle title3{15, 20, false};
inline constexpr TextStyle headline{13, 16, false};
inline constexpr TextStyle body{13, 16, false};
inline constexpr TextStyle caption{10, 13, false};
inline constexpr TextStyle caption2{10, 13, false};
inline constexpr TextStyle hint{9, 12, false};

}  // namespace textStyle

}  // namespace bonkora
