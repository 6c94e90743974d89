#include "ui/controls/Pressable.h"

#include <QKeyEvent>

#include "ui/drawing/Colors.h"

namespace bonkora {

Pressable::Pressable(QAccessible::Role role) : accessibleRole(role) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Pressable::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !event->isAutoRepeat()) {
        click();
    } else if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select) {
        QAbstractButton::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

void Pressable::focusInEvent(QFocusEvent* event) {
    ring.follow(*event);
    QAbstractButton::focusInEvent(event);
}

void Pressable::focusOutEvent(QFocusEvent* event) {
    ring.follow(*event);
    QAbstractButton::focusOutEvent(event);
}

void Pressable::drawFocusRing(QPainter& painter, qreal radius) const {
    if (hasFocus() && ring.isShown()) {
        FocusRing::draw(painter, rect(), radius, palette().color(colorRole::focusRing));
    }
}

void Pressable::announceOn() {
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

}  // namespace bonkora
