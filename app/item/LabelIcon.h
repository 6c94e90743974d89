// LabelIcon: the label's symbol as a picture for a bar: as an icon engine for Qt's tray icon, and
// as plain pixels for a bar of unknown colour.
#pragma once

#include <QColor>
#include <QIconEngine>
#include <QImage>

#include "ui/drawing/Symbol.h"

namespace bonkora {

// Paints the symbol in the middle of whatever room a tray gives, in one colour.
class LabelIconEngine final : public QIconEngine {
  public:
    LabelIconEngine(Symbol symbol, const QColor& color);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;

  private:
    const Symbol symbol;
    const QColor color;
};

namespace labelIcon {

// Readable on light and on dark: light, with a dark outline. `size` in device pixels. Any thread.
QImage outlined(Symbol symbol, int size);

}  // namespace labelIcon

}  // namespace bonkora
