#include "ui/drawing/Card.h"

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

}  // namespace bonkora
