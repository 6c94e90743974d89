// ToggleRow: a title above a subtitle, and a switch at the right. A press does not flip it: it only
// sends clicked(), and display() follows.
#pragma once

#include "ui/controls/Buttons.h"

namespace bonkora {

class ToggleRow final : public Pressable {
    Q_OBJECT

  public:
    ToggleRow(const QString& title, const QString& subtitle);

    void display(bool isOn);

    bool isOn() const override { return on; }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void paintSwitch(QPainter& painter) const;

    bool on = false;
};

}  // namespace bonkora
