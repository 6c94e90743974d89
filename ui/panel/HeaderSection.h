// HeaderSection: the symbol, the title and the run control. Main thread.
#pragma once

#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/controls/RunButton.h"

namespace bonkora {

class HeaderSection final : public QWidget {
    Q_OBJECT

  public:
    explicit HeaderSection(SpankWrapper& spankWrapper);

    void redraw();

  private:
    SpankWrapper& spankWrapper;
    RunButton* runButton;
};

}  // namespace bonkora
