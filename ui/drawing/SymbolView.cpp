#include "ui/drawing/SymbolView.h"

namespace bonkora {

SymbolView::SymbolView(Symbol theSymbol, int size, QPalette::ColorRole theColor)
    : symbol(theSymbol), color(theColor) {
    setFixedSize(size, size);
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSymbol(painter, symbol, rect(), palette().color(color));
}

}  // namespace bonkora
