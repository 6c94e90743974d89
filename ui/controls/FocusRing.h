// FocusRing: whether a control shows that it holds the keyboard focus, and how. The ring appears
// when the focus came by the keyboard, and goes with the focus; a click does not call it up.
// Main thread.
#pragma once

#include <QFocusEvent>
#include <QPainter>
#include <QRectF>

namespace bonkora {

class FocusRing {
  public:
    // Hand every focus event of the control to this. Whether the ring came or went.
    bool follow(const QFocusEvent& event);
    bool isShown() const { return shown; }

    // Around `box`, two pixels wide, on its inside.
    static void draw(QPainter& painter, const QRectF& box, qreal radius, const QColor& color);

  private:
    bool shown = false;
};

}  // namespace bonkora
