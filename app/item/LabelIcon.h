// LabelIcon: the label as a picture for a bar: as an icon engine for Qt's tray icon, and as plain
// pixels for a bar of unknown colour.
#pragma once

#include <QColor>
#include <QIconEngine>
#include <QImage>

#include "app/item/MenuBarItem.h"

namespace bonkora {

// Paints the label into whatever room a tray gives: the symbol alone in a square, symbol and title
// where it is wide enough. Main thread.
class LabelIconEngine final : public QIconEngine {
  public:
    LabelIconEngine(const MenuBarLabel& label, const QColor& color);

    // The width that symbol and title need in a bar of that height.
    static int width(const MenuBarLabel& label, int height);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;

  private:
    const MenuBarLabel label;
    const QColor color;
};

namespace labelIcon {

// Readable on light and on dark: light, with a dark outline. `size` in device pixels. Any thread.
QImage outlined(Symbol symbol, int size);

}  // namespace labelIcon

}  // namespace bonkora
