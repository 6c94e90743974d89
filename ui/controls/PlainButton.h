// PlainButton: a word without bezel or background that can be pressed. Main thread.
#pragma once

#include "ui/controls/Pressable.h"
#include "ui/drawing/TextStyle.h"

namespace bonkora {

class PlainButton final : public Pressable {
    Q_OBJECT

  public:
    PlainButton(const TextStyle& style, QPalette::ColorRole color, const QString& text);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

  private:
    const TextStyle look;
    const QPalette::ColorRole color;
};

}  // namespace bonkora
