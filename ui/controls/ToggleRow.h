// ToggleRow: a title above a subtitle, and a switch at the right. It shows what it is told; a press
// only says so. Main thread.
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
