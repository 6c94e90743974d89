// FocusRing: whether and how a control shows that it holds the keyboard focus. The ring appears
// when the focus arrives by the keyboard, not by a click, and disappears with the focus.
#pragma once

#include <QFocusEvent>
#include <QPainter>
#include <QRectF>

namespace bonkora {

class FocusRing {
  public:
    // To be given every focus event of the control. Returns whether the ring appeared or went.
    bool follow(const QFocusEvent& event);
    bool isShown() const { return shown; }

    // Just inside `box`, two pixels wide.
    static void draw(QPainter& painter, const QRectF& box, qreal radius, const QColor& color);

  private:
    bool shown = false;
};

}  // namespace bonkora
