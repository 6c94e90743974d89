#include "app/item/LabelIcon.h"

#include <QPainter>
#include <QPixmap>
#include <algorithm>

namespace bonkora {

LabelIconEngine::LabelIconEngine(Symbol theSymbol, const QColor& theColor)
    : symbol(theSymbol), color(theColor) {}

void LabelIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) {
    // As much of the bar as its own icons usually take: 18 pixels of 22.
    const int side = std::min(rect.width(), rect.height()) * 9 / 11;
    QRect square(0, 0, side, side);
    square.moveCenter(rect.center());
    drawSymbol(*painter, symbol, square, color);
}

QPixmap LabelIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, {QPoint(), size}, mode, state);
    return pixmap;
}

QIconEngine* LabelIconEngine::clone() const {
    return new LabelIconEngine(symbol, color);
}

QImage labelIcon::outlined(Symbol symbol, int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal margin = size / 16.0;
    const QPainterPath path =
        symbolPath(symbol, QRectF(0, 0, size, size).adjusted(margin, margin, -margin, -margin));
    painter.strokePath(path, QPen(QColor(0x20, 0x20, 0x20, 0xC0), size / 10.0, Qt::SolidLine,
                                  Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, QColor(0xF5, 0xF5, 0xF5));
    return image;
}

}  // namespace bonkora
