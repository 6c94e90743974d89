// Where the panel goes: beside the item, clear of the bar, inside the screen. Pure functions in
// logical pixels; any thread.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>

namespace bonkora::panelPlacement {

// The rectangle of the item that was clicked at `click`. `reported` is believed only if it is at
// most 64 high and holds the click; otherwise the item is taken to be as thick as a bar that has
// the click in its middle. Nothing for a click that is in no bar.
std::optional<QRect> itemRectangle(const QPoint& click, const QRect& reported, const QRect& screen);

// The panel's place for that item; for none, the corner in which bars keep their items. A panel
// that is higher than the screen has room for is lower by what is missing.
QRect panelRectangle(const QSize& wanted, const std::optional<QRect>& item, const QRect& screen,
                     const QRect& available);

}  // namespace bonkora::panelPlacement
