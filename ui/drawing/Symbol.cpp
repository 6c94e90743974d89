#include "ui/drawing/Symbol.h"

#include <QPainterPathStroker>
#include <QTransform>

#include "ui/drawing/Shapes.h"

namespace bonkora {

namespace {

// The drawings below use a square of 24 by 24.
constexpr qreal gridSize = 24;

QPainterPath bar(const QPointF& from, const QPointF& to, qreal width) {
    QPainterPath line(from);
    line.lineTo(to);
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    return stroker.createStroke(line);
}

// Four fingers with gaps between them, a thumb to the left, and the palm that joins them.
QPainterPath hand() {
    QPainterPath palm;
    palm.moveTo(7.0, 12.2);
    palm.lineTo(19.9, 12.2);
    palm.lineTo(19.9, 15.6);
    palm.cubicTo(19.9, 20.0, 17.0, 22.9, 13.2, 22.9);
    palm.cubicTo(10.2, 22.9, 8.3, 21.6, 6.9, 19.3);
    palm.lineTo(3.3, 13.9);
    palm.cubicTo(2.6, 12.8, 2.9, 11.7, 3.8, 11.2);
    palm.cubicTo(4.6, 10.8, 5.4, 11.0, 6.0, 11.7);
    palm.lineTo(7.0, 13.0);
    palm.closeSubpath();

    return (palm | bar({8.3, 5.2}, {8.3, 13.6}, 2.6) | bar({11.8, 2.6}, {11.8, 13.6}, 2.6) |
            bar({15.3, 3.7}, {15.3, 13.6}, 2.6) | bar({18.65, 7.1}, {18.65, 14.6}, 2.5))
        .simplified();
}

QPainterPath play() {
    QPainterPath triangle;
    triangle.moveTo(5.5, 3.5);
    triangle.lineTo(20.5, 12.0);
    triangle.lineTo(5.5, 20.5);
    triangle.closeSubpath();
    QPainterPathStroker rounding;
    rounding.setWidth(3);
    rounding.setJoinStyle(Qt::RoundJoin);
    return triangle | rounding.createStroke(triangle);
}

QPainterPath checkmarkCircle() {
    QPainterPath circle;
    circle.addEllipse(QRectF(1.5, 1.5, 21, 21));
    QPainterPath tick(QPointF(7.4, 12.6));
    tick.lineTo(10.7, 16.0);
    tick.lineTo(16.6, 8.3);
    QPainterPathStroker stroker;
    stroker.setWidth(2.2);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return circle - stroker.createStroke(tick);
}

QPainterPath onGrid(Symbol symbol) {
    switch (symbol) {
        case Symbol::handRaisedFill: {
            // Every start needs it in many sizes, and uniting outlines is costly.
            static const QPainterPath path = hand();
            return path;
        }
        case Symbol::playFill:
            return play();
        case Symbol::stopFill:
            return shapes::continuousRectangle(QRectF(3.5, 3.5, 17, 17), 3.5);
        case Symbol::checkmarkCircleFill:
            return checkmarkCircle();
    }
    return {};
}

}  // namespace

QPainterPath symbolPath(Symbol symbol, const QRectF& box) {
    return QTransform()
        .translate(box.left(), box.top())
        .scale(box.width() / gridSize, box.height() / gridSize)
        .map(onGrid(symbol));
}

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& box, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(symbolPath(symbol, box), color);
}

}  // namespace bonkora
