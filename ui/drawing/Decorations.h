// What is there for the eye alone: cards, dividers, the status dot and symbols. None of it takes
// the focus or a click.
#pragma once

#include <QPalette>
#include <QWidget>

#include "ui/drawing/Symbol.h"

namespace bonkora {

// Card: the background that the status, settings and stats sections share, with continuous corners.
// Its content keeps `padding` pixels from the edge.
class Card : public QWidget {
    Q_OBJECT

  public:
    static constexpr int padding = 10;
    static constexpr int cornerRadius = 8;

    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

// Divider: a horizontal line, one logical pixel high, in the separator colour.
class Divider final : public QWidget {
    Q_OBJECT

  public:
    Divider();

  protected:
    void paintEvent(QPaintEvent* event) override;
};

// StatusDot: a filled circle in a colour role, eight logical pixels wide.
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

// SymbolView: one symbol in one colour role, `size` pixels high and as wide as its drawing, so that
// it lines up with what stands above and below.
class SymbolView final : public QWidget {
    Q_OBJECT

  public:
    SymbolView(Symbol symbol, int size, QPalette::ColorRole color);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const QPainterPath outline;
    const QPalette::ColorRole color;
};

}  // namespace bonkora
