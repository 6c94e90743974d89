#include "ui/controls/FocusRing.h"

#include "ui/drawing/Shapes.h"

namespace bonkora {

bool FocusRing::follow(const QFocusEvent& event) {
    const bool before = shown;
    switch (event.reason()) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            shown = event.gotFocus();
            break;
        case Qt::ActiveWindowFocusReason:
        case Qt::PopupFocusReason:
            break;  // the window went out of use or came back: the ring stays as it was
        default:
            shown = false;
    }
    return shown != before;
}

void FocusRing::draw(QPainter& painter, const QRectF& box, qreal radius, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 2));
    painter.drawPath(shapes::continuousRectangle(box.adjusted(1, 1, -1, -1), radius));
}

}  // namespace bonkora
