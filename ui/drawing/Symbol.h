// The symbols that the application uses, drawn as outlines: crisp at every scale and in any colour.
// Any thread.
#pragma once

#include <QPainter>
#include <QPainterPath>
#include <QRectF>

namespace bonkora {

enum class Symbol {
    handRaisedFill,       // hand.raised.fill
    playFill,             // play.fill
    stopFill,             // stop.fill
    checkmarkCircleFill,  // checkmark.circle.fill
};

// The symbol's outline in `box`, which is square.
QPainterPath symbolPath(Symbol symbol, const QRectF& box);

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& box, const QColor& color);

}  // namespace bonkora
