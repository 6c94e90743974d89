// LabelIconEngine: paints the label into whatever room a tray gives: the symbol alone in a square,
// symbol and title where it is wide enough. Main thread.
#pragma once

#include <QIconEngine>

#include "app/item/MenuBarLabel.h"

namespace bonkora {

class LabelIconEngine final : public QIconEngine {
  public:
    LabelIconEngine(const MenuBarLabel& label, const QColor& color);

    // That symbol and title need in a bar of that height.
    static int width(const MenuBarLabel& label, int height);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;

  private:
    const MenuBarLabel label;
    const QColor color;
};

}  // namespace bonkora
