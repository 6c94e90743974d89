// The painted buttons: what all of them have in common, the plain word and the run control.
// Main thread.
#pragma once

#include <QAbstractButton>
#include <QAccessible>

#include "ui/controls/FocusRing.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

// Pressable: what the panel's painted buttons have in common: pressed by mouse, space and enter,
// reached by Tab, a focus ring, a role and a description for assistive technology. It keeps no
// state of its own beside what it was last told to show. Main thread.
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

// PlainButton: a word without bezel or background that can be pressed. Main thread.
class PlainButton final : public Pressable {
    Q_OBJECT

  public:
    PlainButton(const TextStyle& style, QPalette::ColorRole color, const QString& text);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

  private:
    const TextStyle look;
    const QPalette::ColorRole color;
};

// RunButton: the header's run control: a symbol and a word in white on the accent colour ("Start")
// or on red ("Stop"). It shows what it is told and is never disabled. Main thread.
class RunButton final : public Pressable {
    Q_OBJECT

  public:
    RunButton();

    void display(bool isRunning);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool showsRunning = false;
};

}  // namespace bonkora
