#include "ui/controls/ToggleRow.h"

#include <QPainter>

#include "ui/drawing/Colors.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

namespace {

constexpr int switchSpacing = 8;
constexpr int titleSpacing = 1;
constexpr int switchWidth = 32;
constexpr int switchHeight = 18;
constexpr int thumbInset = 2;
constexpr TextStyle titleStyle = textStyle::caption.monospaced();
constexpr TextStyle subtitleStyle = textStyle::caption2.monospaced();
constexpr int focusMargin = 3;
constexpr int textHeight = titleStyle.lineHeight + titleSpacing + subtitleStyle.lineHeight;

QColor between(const QColor& off, const QColor& on, qreal position) {
    const auto share = static_cast<float>(position);
    const auto mix = [share](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(off.redF(), on.redF()), mix(off.greenF(), on.greenF()),
                            mix(off.blueF(), on.blueF()));
}

}  // namespace

ToggleRow::ToggleRow(const QString& title, const QString& subtitle)
    : Pressable(QAccessible::CheckBox) {
    setText(title);
    setAccessibleDescription(subtitle);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&thumb, &Eased::moved, this, qOverload<>(&QWidget::update));
}

void ToggleRow::display(bool isOn, Transition transition) {
    if (isOn != thumb.isOn()) {
        thumb.setOn(isOn, transition);
        announceOn();
    }
}

QSize ToggleRow::sizeHint() const {
    return {100, textHeight};
}

QRectF ToggleRow::focusBox() const {
    return QRectF(rect()).adjusted(-focusMargin, -focusMargin, focusMargin, focusMargin);
}

qreal ToggleRow::focusRadius() const {
    return 4;
}

void ToggleRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF title(0, 0, width() - switchWidth - switchSpacing, titleStyle.lineHeight);
    textPainter::drawLine(painter, title, text(), titleStyle, palette().color(colorRole::primary));
    textPainter::drawLine(painter, title.translated(0, titleStyle.lineHeight + titleSpacing),
                          accessibleDescription(), subtitleStyle,
                          palette().color(colorRole::secondary));
    paintSwitch(painter);
}

void ToggleRow::paintSwitch(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF body(width() - switchWidth, (height() - switchHeight) / 2.0, switchWidth,
                      switchHeight);
    painter.setBrush(between(palette().color(colorRole::track), palette().color(colorRole::accent),
                             thumb.position()));
    painter.drawRoundedRect(body, switchHeight / 2.0, switchHeight / 2.0);
    const qreal size = switchHeight - 2 * thumbInset;
    const qreal way = body.width() - 2 * thumbInset - size;
    const qreal x = body.left() + thumbInset + way * thumb.position();
    painter.setBrush(isDown() ? QColor(0xEE, 0xEE, 0xEE) : QColor(Qt::white));
    painter.drawEllipse(QRectF(x, body.top() + thumbInset, size, size));
}

}  // namespace bonkora
