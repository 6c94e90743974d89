// The painted buttons: what all of them share, the plain word and the run control.
#pragma once

#include <QAbstractButton>
#include <QAccessible>

#include "ui/controls/FocusRing.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

// Pressable: what the painted buttons share. It is pressed by mouse, space or enter, is reached by
// Tab, shows a focus ring and has a role for assistive technology. Its only state is what it was
// last told to display.
class Pressable : public QAbstractButton, public FocusTarget {
    Q_OBJECT

  public:
    explicit Pressable(QAccessible::Role role);

    QAccessible::Role role() const { return accessibleRole; }
    // Whether a radio button is displayed as chosen, or a check box as on.
    virtual bool isOn() const { return false; }

    QSize minimumSizeHint() const override { return sizeHint(); }
    QRectF focusBox() const override { return rect(); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    // Tells assistive technology that isOn() has changed.
    void announceOn();

  private:
    const QAccessible::Role accessibleRole;
};

// PlainButton: a word that can be pressed, without bezel or background.
class PlainButton final : public Pressable {
    Q_OBJECT

  public:
    PlainButton(const TextStyle& style, QPalette::ColorRole color, const QString& text);

    QSize sizeHint() const override;
    QRectF focusBox() const override;
    qreal focusRadius() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

  private:
    const TextStyle look;
    const QPalette::ColorRole color;
};

// RunButton: the header's run control, a white symbol and word on the accent colour ("Start") or on
// red ("Stop"). It is never disabled.
class RunButton final : public Pressable {
    Q_OBJECT

  public:
    RunButton();

    void display(bool isRunning);

    QSize sizeHint() const override;
    qreal focusRadius() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool showsRunning = false;
};

}  // namespace bonkora
