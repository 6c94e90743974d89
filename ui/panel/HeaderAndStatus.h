// The two sections that say whether the detector is listening.
#pragma once

#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/controls/Buttons.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Decorations.h"

namespace bonkora {

// HeaderSection: the symbol, the title and the run control.
class HeaderSection final : public QWidget {
    Q_OBJECT

  public:
    explicit HeaderSection(SpankWrapper& spankWrapper);

    void redraw();

  private:
    SpankWrapper& spankWrapper;
    RunButton* runButton;
};

// StatusSection: the card with the status message and the force of the last slap.
class StatusSection final : public Card {
    Q_OBJECT

  public:
    explicit StatusSection(SpankWrapper& spankWrapper);

    void redraw();

  private:
    SpankWrapper& spankWrapper;
    StatusDot* dot;
    TextLabel* statusText;
    QWidget* impactRow;
    TextLabel* impactValue;
};

}  // namespace bonkora
