#include "app/item/LabelIcon.h"

#include <QPainter>

namespace bonkora::labelIcon {

QImage outlined(Symbol symbol, int size) {
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

}  // namespace bonkora::labelIcon
