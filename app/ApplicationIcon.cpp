#include "app/ApplicationIcon.h"

#include <QLineF>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>

#include "ui/drawing/Symbol.h"

namespace bonkora {

namespace {

// The side of the picture whose units the numbers below are in.
constexpr int grid = 128;
constexpr int sizes[] = {16, 24, 32, 48, 64, 128};

QPixmap drawn(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / static_cast<qreal>(grid), size / static_cast<qreal>(grid));

    QLinearGradient tile(0, 8, 0, 120);
    tile.setColorAt(0, QColor(0xFF, 0x7A, 0x4D));
    tile.setColorAt(1, QColor(0xD7, 0x00, 0x15));
    painter.setPen(Qt::NoPen);
    painter.setBrush(tile);
    painter.drawRoundedRect(8, 8, 112, 112, 26, 26);

    painter.fillPath(symbolPath(Symbol::handRaisedFill, QRectF(21, 18.5, 86.4, 86.4)), Qt::white);

    const QLineF knock[] = {{97, 32, 104, 25}, {101, 43, 111, 41}, {88, 25, 91, 16}};
    painter.setPen(QPen(QColor(0xFF, 0xD6, 0x0A), 5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLines(knock, std::size(knock));
    return pixmap;
}

}  // namespace

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : sizes) {
        icon.addPixmap(drawn(size));
    }
    return icon;
}

}  // namespace bonkora
