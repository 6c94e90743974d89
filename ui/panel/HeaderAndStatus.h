// The two sections that tell whether the detector listens. Main thread.
#pragma once

#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/controls/Buttons.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Decorations.h"

namespace bonkora {

// HeaderSection: the symbol, the title and the run control. Main thread.
class HeaderSection final : public QWidget {
    Q_OBJECT

  public:
    explicit HeaderSection(SpankWrapper& spankWrapper);

    void redraw();

  private:
    SpankWrapper& spankWrapper;
    RunButton* runButton;
};

// StatusSection: the card that tells whether the detector listens, and how hard the last slap was.
// Main thread.
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
