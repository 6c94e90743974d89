// The system symbols that the application uses, as drawings of our own: crisp at every scale, in
// any colour. Pure functions; any thread.
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

// The symbol's outline inside `box`, which is square.
QPainterPath symbolPath(Symbol symbol, const QRectF& box);

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& box, const QColor& color);

}  // namespace bonkora
