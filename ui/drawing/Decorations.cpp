#include "ui/drawing/Decorations.h"

#include <QPainter>
#include <cmath>

#include "ui/drawing/Colors.h"
#include "ui/drawing/Shapes.h"

namespace bonkora {

void Card::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shapes::continuousRectangle(rect(), cornerRadius),
                     palette().color(colorRole::controlBackground));
}

Divider::Divider() {
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), palette().color(colorRole::separator));
}

StatusDot::StatusDot() : color(colorRole::gray) {
    setFixedSize(8, 8);
}

void StatusDot::display(QPalette::ColorRole newColor) {
    if (newColor != color) {
        color = newColor;
        update();
    }
}

void StatusDot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(color));
    painter.drawEllipse(rect());
}

SymbolView::SymbolView(Symbol symbol, int size, QPalette::ColorRole theColor)
    : outline(symbolPath(symbol, QRectF(0, 0, size, size))), color(theColor) {
    setFixedSize(static_cast<int>(std::ceil(outline.boundingRect().width())), size);
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-outline.boundingRect().left(), 0);
    painter.fillPath(outline, palette().color(color));
}

}  // namespace bonkora
