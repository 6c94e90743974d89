// SymbolView: one symbol in one colour role, decoration only. Main thread.
#pragma once

#include <QPalette>
#include <QWidget>

#include "ui/drawing/Symbol.h"

namespace bonkora {

class SymbolView final : public QWidget {
    Q_OBJECT

  public:
    SymbolView(Symbol symbol, int size, QPalette::ColorRole color);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const Symbol symbol;
    const QPalette::ColorRole color;
};

}  // namespace bonkora
