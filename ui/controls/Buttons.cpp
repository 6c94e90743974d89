#include "ui/controls/Buttons.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/drawing/Colors.h"
#include "ui/drawing/Shapes.h"
#include "ui/drawing/Symbol.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

namespace {

// The run control.
constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 6;
constexpr int wordSpacing = 4;
constexpr int buttonRadius = 6;
constexpr int symbolSize = textStyle::caption2.size;
constexpr TextStyle wordStyle = textStyle::caption.monospaced();

}  // namespace

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
    followFocus(*event);
    QAbstractButton::focusInEvent(event);
}

void Pressable::focusOutEvent(QFocusEvent* event) {
    followFocus(*event);
    QAbstractButton::focusOutEvent(event);
}

void Pressable::announceOn() {
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

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
}

// A little air beside and above the letters.
QRectF PlainButton::focusBox() const {
    return QRectF(rect()).adjusted(-2, -1, 2, 1);
}

qreal PlainButton::focusRadius() const {
    return 3;
}

RunButton::RunButton() : Pressable(QAccessible::Button) {
    setText(tr("Start"));
}

void RunButton::display(bool isRunning) {
    if (isRunning != showsRunning) {
        showsRunning = isRunning;
        setText(isRunning ? tr("Stop") : tr("Start"));
        updateGeometry();
        update();
    }
}

QSize RunButton::sizeHint() const {
    const QSizeF word = textPainter::naturalSize(text(), wordStyle);
    return {2 * horizontalPadding + symbolSize + wordSpacing + static_cast<int>(word.width()),
            2 * verticalPadding + wordStyle.lineHeight};
}

void RunButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor base = showsRunning ? runningColor : palette().color(colorRole::accent);
    painter.fillPath(shapes::continuousRectangle(rect(), buttonRadius),
                     isDown() ? base.darker(115) : base);
    const QRectF symbol(horizontalPadding, (height() - symbolSize) / 2.0, symbolSize, symbolSize);
    drawSymbol(painter, showsRunning ? Symbol::stopFill : Symbol::playFill, symbol, Qt::white);
    const QRectF word = QRectF(rect()).adjusted(symbol.right() + wordSpacing, 0, 0, 0);
    textPainter::drawLine(painter, word, text(), wordStyle, Qt::white);
}

qreal RunButton::focusRadius() const {
    return buttonRadius;
}

}  // namespace bonkora
