#include "app/item/LabelIcon.h"

#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>

#include "ui/drawing/TextStyle.h"

namespace bonkora {

namespace {

constexpr TextStyle titleStyle{12, 16, false, QFont::Medium};
constexpr int padding = 4;
constexpr int spacing = 5;
constexpr int largestSymbol = 18;

}  // namespace

LabelIconEngine::LabelIconEngine(const MenuBarLabel& theLabel, const QColor& theColor)
    : label(theLabel), color(theColor) {}

int LabelIconEngine::width(const MenuBarLabel& label, int height) {
    const qreal title = textPainter::naturalSize(label.title, titleStyle).width();
    return 2 * padding + std::min(height, largestSymbol) + spacing +
           static_cast<int>(std::ceil(title));
}

void LabelIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) {
    const int symbolSize = std::min(rect.height() - 2, largestSymbol);
    const bool hasRoom = rect.width() >= width(label, rect.height()) - padding;
    const int left = hasRoom ? rect.left() + padding : rect.center().x() + 1 - symbolSize / 2;
    const QRect symbol(left, rect.top() + (rect.height() - symbolSize) / 2, symbolSize, symbolSize);
    drawSymbol(*painter, label.symbol, symbol, color);
    if (hasRoom) {
        const QRectF title(symbol.right() + 1 + spacing, rect.top(), rect.width(), rect.height());
        textPainter::drawLine(*painter, title, label.title, titleStyle, color);
    }
}

QPixmap LabelIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, {QPoint(), size}, mode, state);
    return pixmap;
}

QIconEngine* LabelIconEngine::clone() const {
    return new LabelIconEngine(label, color);
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
