#include "ui/controls/ToggleRow.h"

#include <QPainter>

#include "ui/drawing/Colors.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

namespace {

constexpr int spacing = 8;
constexpr int lineSpacing = 1;
constexpr int switchWidth = 32;
constexpr int switchHeight = 18;
constexpr int thumbInset = 2;
constexpr TextStyle titleStyle = textStyle::caption.monospaced();
constexpr TextStyle subtitleStyle = textStyle::caption2.monospaced();
constexpr int textHeight = titleStyle.lineHeight + lineSpacing + subtitleStyle.lineHeight;

}  // namespace

ToggleRow::ToggleRow(const QString& title, const QString& subtitle)
    : Pressable(QAccessible::CheckBox) {
    setText(title);
    setAccessibleDescription(subtitle);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ToggleRow::display(bool isOn) {
    if (isOn != on) {
        on = isOn;
        update();
        announceOn();
    }
}

QSize ToggleRow::sizeHint() const {
    return {100, textHeight};
}

void ToggleRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF title(0, 0, width() - switchWidth - spacing, titleStyle.lineHeight);
    textPainter::drawLine(painter, title, text(), titleStyle, palette().color(colorRole::primary));
    textPainter::drawLine(painter, title.translated(0, titleStyle.lineHeight + lineSpacing),
                          accessibleDescription(), subtitleStyle,
                          palette().color(colorRole::secondary));
    paintSwitch(painter);
    drawFocusRing(painter, 4);
}

void ToggleRow::paintSwitch(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF body(width() - switchWidth, (height() - switchHeight) / 2.0, switchWidth,
                      switchHeight);
    painter.setBrush(palette().color(on ? colorRole::accent : colorRole::track));
    painter.drawRoundedRect(body, switchHeight / 2.0, switchHeight / 2.0);
    const qreal thumb = switchHeight - 2 * thumbInset;
    const qreal x = on ? body.right() - thumbInset - thumb : body.left() + thumbInset;
    painter.setBrush(isDown() ? QColor(0xEE, 0xEE, 0xEE) : QColor(Qt::white));
    painter.drawEllipse(QRectF(x, body.top() + thumbInset, thumb, thumb));
}

}  // namespace bonkora
