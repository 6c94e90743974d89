#include "ui/controls/RunButton.h"

#include <QPainter>
#include <cmath>

#include "ui/drawing/Colors.h"
#include "ui/drawing/Shapes.h"
#include "ui/drawing/Symbol.h"
#include "ui/drawing/TextPainter.h"

namespace bonkora {

namespace {

constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 6;
constexpr int spacing = 4;
constexpr int cornerRadius = 6;
constexpr int symbolSize = textStyle::caption2.size;
constexpr TextStyle wordStyle = textStyle::caption.monospaced();

}  // namespace

RunButton::RunButton() : Pressable(QAccessible::Button) {
    setText(tr("Start"));
}

void RunButton::show(bool isRunning) {
    if (isRunning != showsRunning) {
        showsRunning = isRunning;
        setText(isRunning ? tr("Stop") : tr("Start"));
        updateGeometry();
        update();
    }
}

QSize RunButton::sizeHint() const {
    const QSizeF word = textPainter::naturalSize(text(), wordStyle);
    return {2 * horizontalPadding + symbolSize + spacing + static_cast<int>(word.width()),
            2 * verticalPadding + wordStyle.lineHeight};
}

void RunButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor base = showsRunning ? runningColor : palette().color(colorRole::accent);
    painter.fillPath(shapes::continuousRectangle(rect(), cornerRadius),
                     isDown() ? base.darker(115) : base);
    const QRectF symbol(horizontalPadding, (height() - symbolSize) / 2.0, symbolSize, symbolSize);
    drawSymbol(painter, showsRunning ? Symbol::stopFill : Symbol::playFill, symbol, Qt::white);
    const QRectF word = QRectF(rect()).adjusted(symbol.right() + spacing, 0, 0, 0);
    textPainter::drawLine(painter, word, text(), wordStyle, Qt::white);
    drawFocusRing(painter, cornerRadius);
}

}  // namespace bonkora
