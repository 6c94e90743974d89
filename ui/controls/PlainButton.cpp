#include "ui/controls/PlainButton.h"

#include <QPainter>

#include "ui/drawing/TextPainter.h"

namespace bonkora {

PlainButton::PlainButton(const TextStyle& theStyle, QPalette::ColorRole theColor,
                         const QString& text)
    : Pressable(QAccessible::Button), look(theStyle), color(theColor) {
    setText(text);
}

QSize PlainButton::sizeHint() const {
    return textPainter::naturalSize(text(), look).toSize();
}

void PlainButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor shade = palette().color(color);
    shade.setAlphaF(isDown() ? 0.5F : 1.0F);
    textPainter::drawLine(painter, rect(), text(), look, shade);
    drawFocusRing(painter, 3);
}

}  // namespace bonkora
