// Pressable: what the panel's painted buttons have in common: pressed by mouse, space and enter,
// reached by Tab, a focus ring, a role and a description for assistive technology. It keeps no
// state of its own beside what it was last told to show. Main thread.
#pragma once

#include <QAbstractButton>
#include <QAccessible>

#include "ui/controls/FocusRing.h"

namespace bonkora {

class Pressable : public QAbstractButton {
    Q_OBJECT

  public:
    explicit Pressable(QAccessible::Role role);

    QAccessible::Role role() const { return accessibleRole; }
    // For radio buttons and check boxes: whether it is shown as chosen or on.
    virtual bool isOn() const { return false; }

    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    // Draws the ring where there is one to show.
    void drawFocusRing(QPainter& painter, qreal radius) const;
    // Tells assistive technology that isOn() differs.
    void announceOn();

  private:
    const QAccessible::Role accessibleRole;
    FocusRing ring;
};

}  // namespace bonkora
