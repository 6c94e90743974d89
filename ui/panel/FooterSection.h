// FooterSection: the credit line and "Quit". Never changes. Main thread.
#pragma once

#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/panel/PanelEnvironment.h"

namespace bonkora {

class FooterSection final : public QWidget {
    Q_OBJECT

  public:
    FooterSection(SpankWrapper& spankWrapper, const PanelEnvironment& environment);

  private:
    void quit();

    SpankWrapper& spankWrapper;
    const PanelEnvironment environment;
};

}  // namespace bonkora
