// ToggleRow: a title above a subtitle, and a switch at the right. A press does not flip it: it only
// sends clicked(), and display() follows.
#pragma once

#include "ui/controls/Buttons.h"
#include "ui/controls/Eased.h"

namespace bonkora {

class ToggleRow final : public Pressable {
    Q_OBJECT

  public:
    ToggleRow(const QString& title, const QString& subtitle);

    void display(bool isOn, Transition transition);

    bool isOn() const override { return thumb.isOn(); }
    // Where the switch's thumb stands, from 0 (off) to 1 (on).
    qreal thumbPosition() const { return thumb.position(); }
    QSize sizeHint() const override;
    QRectF focusBox() const override;
    qreal focusRadius() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void paintSwitch(QPainter& painter) const;

    Eased thumb{this};
};

}  // namespace bonkora
