// The shapes that the panel is drawn with. Any thread.
#pragma once

#include <QPainterPath>
#include <QRectF>

namespace bonkora::shapes {

// A rounded rectangle whose corners begin without a jump in curvature, 1.3 radii from the corner.
// In its middle a corner touches the circle of `radius` that a plain rounded rectangle would have.
QPainterPath continuousRectangle(const QRectF& rectangle, qreal radius);

}  // namespace bonkora::shapes
