// What the panel paints for the eye alone: cards, dividers, the status dot and symbols. None of it
// takes the focus or a click. Main thread.
#pragma once

#include <QPalette>
#include <QWidget>

#include "ui/drawing/Symbol.h"

namespace bonkora {

// Card: the look that status, settings and stats share: the control background behind ten pixels
// of padding, with continuous corners. Main thread.
class Card : public QWidget {
    Q_OBJECT

  public:
    static constexpr int padding = 10;
    static constexpr int cornerRadius = 8;

    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

// Divider: a horizontal line, one logical pixel high, in the separator colour. Main thread.
class Divider final : public QWidget {
    Q_OBJECT

  public:
    Divider();

  protected:
    void paintEvent(QPaintEvent* event) override;
};

// StatusDot: a filled circle in a colour role, eight logical pixels wide. Main thread.
class StatusDot final : public QWidget {
    Q_OBJECT

  public:
    StatusDot();

    void display(QPalette::ColorRole color);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QPalette::ColorRole color;
};

// SymbolView: one symbol in one colour role, decoration only. Main thread.
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
