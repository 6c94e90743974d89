// The shapes that the panel is drawn with. Pure functions; any thread.
#pragma once

#include <QPainterPath>
#include <QRectF>

namespace bonkora::shapes {

// A rounded rectangle whose corners grow out of the sides without a jump in curvature. `radius` is
// that of the circle with the same corner point; the curve begins 1.3 radii from the corner.
QPainterPath continuousRectangle(const QRectF& rectangle, qreal radius);

}  // namespace bonkora::shapes
