#include "ui/drawing/Divider.h"

#include <QPainter>

#include "ui/drawing/Colors.h"

namespace bonkora {

Divider::Divider() {
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), palette().color(colorRole::separator));
}

}  // namespace bonkora
