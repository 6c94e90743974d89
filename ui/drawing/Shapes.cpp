#include "ui/drawing/Shapes.h"

#include <algorithm>

namespace bonkora::shapes {

QPainterPath continuousRectangle(const QRectF& rectangle, qreal radius) {
    const qreal start = std::min({1.3 * radius, rectangle.width() / 2, rectangle.height() / 2});
    // The middle of the curve lies (start + 3 pull) / 8 from each side, a circle's 0.2929 radii.
    const qreal pull = std::max((8 * 0.29289 * radius - start) / 3, 0.0);

    QPainterPath path;
    const auto corner = [&](const QPointF& at, const QPointF& before, const QPointF& after) {
        path.lineTo(at + before * start);
        path.cubicTo(at + before * pull, at + after * pull, at + after * start);
    };
    path.moveTo(rectangle.left() + start, rectangle.top());
    corner(rectangle.topRight(), {-1, 0}, {0, 1});
    corner(rectangle.bottomRight(), {0, -1}, {-1, 0});
    corner(rectangle.bottomLeft(), {1, 0}, {0, -1});
    corner(rectangle.topLeft(), {0, 1}, {1, 0});
    path.closeSubpath();
    return path;
}

}  // namespace bonkora::shapes
