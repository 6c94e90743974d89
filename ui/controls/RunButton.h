// RunButton: the header's run control: a symbol and a word in white on the accent colour ("Start")
// or on red ("Stop"). It shows what it is told and is never disabled. Main thread.
#pragma once

#include "ui/controls/Pressable.h"

namespace bonkora {

class RunButton final : public Pressable {
    Q_OBJECT

  public:
    RunButton();

    void show(bool isRunning);
    using Pressable::show;

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool showsRunning = false;
};

}  // namespace bonkora
