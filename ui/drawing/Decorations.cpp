#include "ui/drawing/Decorations.h"

#include <QPainter>

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

SymbolView::SymbolView(Symbol theSymbol, int size, QPalette::ColorRole theColor)
    : symbol(theSymbol), color(theColor) {
    setFixedSize(size, size);
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSymbol(painter, symbol, rect(), palette().color(color));
}

}  // namespace bonkora
