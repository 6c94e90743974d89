#include "ui/controls/FocusRing.h"

#include <QApplication>
#include <QPainter>

#include "ui/drawing/Colors.h"
#include "ui/drawing/Shapes.h"

namespace bonkora {

namespace {

constexpr qreal thickness = 2;

}  // namespace

void FocusTarget::followFocus(const QFocusEvent& event) {
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
}

FocusRing::FocusRing(QWidget& theArea) : QWidget(&theArea), area(theArea) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focused) { follow(focused); });
}

void FocusRing::follow(QWidget* focused) {
    if (control) {
        control->removeEventFilter(this);
    }
    const bool isTarget =
        area.isAncestorOf(focused) && dynamic_cast<FocusTarget*>(focused) != nullptr;
    control = isTarget ? focused : nullptr;
    if (control) {
        control->installEventFilter(this);
    }
    place();
}

// A control is painted anew whenever its box may have moved: by a layout further up, or within the
// control, as a slider's thumb does. Placed in the next turn, because this one is painting.
bool FocusRing::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Paint || event->type() == QEvent::Move) {
        QMetaObject::invokeMethod(this, &FocusRing::place, Qt::QueuedConnection);
    }
    return false;
}

void FocusRing::place() {
    const auto* const target = dynamic_cast<FocusTarget*>(control.data());
    if (target == nullptr || !control->hasFocus() || !target->showsFocus()) {
        hide();
        return;
    }
    const QRectF box = target->focusBox().translated(control->mapTo(&area, QPoint(0, 0)));
    const QRect place = box.adjusted(-reach, -reach, reach, reach).toAlignedRect();
    const qreal out = reach - thickness / 2;
    const QRectF newLine = box.adjusted(-out, -out, out, out).translated(-place.topLeft());
    if (place != geometry() || newLine != line) {
        line = newLine;
        radius = target->focusRadius() + out;
        setGeometry(place);
        update();
    }
    if (isHidden()) {
        raise();
        show();
    }
}

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(colorRole::focusRing), thickness));
    painter.drawPath(shapes::continuousRectangle(line, radius));
}

}  // namespace bonkora
