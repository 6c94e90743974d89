// Where the panel goes: beside the item, clear of the bar, inside the screen. Pure functions in
// logical pixels; any thread.
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>

namespace bonkora::panelPlacement {

// A screen in logical pixels, each of so many device pixels.
struct ScreenPlace {
    QRect geometry;
    qreal pixelRatio = 1;
};

// Where an item was clicked: where the pointer is, if that can be asked; else where the bar says,
// if that can be true: some bars on Wayland report the place within the item, which looks like the
// upper left corner of a screen, some nothing at all, and Plasma counts device pixels. Nothing if
// neither is known.
std::optional<QPoint> clickPlace(const std::optional<QPoint>& pointer, const QPoint& reported,
                                 const QList<ScreenPlace>& screens);

// The rectangle of the item that was clicked at `click`. `reported` is believed only if it is at
// most 64 high and holds the click; otherwise the item is taken to be as thick as a bar that has
// the click in its middle. Nothing for a click that is in no bar. The part of
// `screen` that is not `available` is taken by bars, which tells at the end of which bar an item in
// a corner is.
std::optional<QRect> itemRectangle(const QPoint& click, const QRect& reported, const QRect& screen,
                                   const QRect& available);

// The panel's place for that item; for none, the corner in which bars keep their items. A panel
// that is higher than the screen allows is made as low as needed.
QRect panelRectangle(const QSize& wanted, const std::optional<QRect>& item, const QRect& screen,
                     const QRect& available);

// Where the item that was clicked at `click` is, now that its screen was `before` and is `after`:
// bars keep their items as far from the nearer edges as they were.
QPoint followScreen(const QPoint& click, const QRect& before, const QRect& after);

}  // namespace bonkora::panelPlacement
