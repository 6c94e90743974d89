#include "ui/drawing/StatusDot.h"

#include <QPainter>

#include "ui/drawing/Colors.h"

namespace bonkora {

StatusDot::StatusDot() : color(colorRole::gray) {
    setFixedSize(8, 8);
}

void StatusDot::show(QPalette::ColorRole newColor) {
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

}  // namespace bonkora
