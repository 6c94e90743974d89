// The two sections at the bottom of the panel. Main thread.
#pragma once

#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Decorations.h"
#include "ui/panel/PanelEnvironment.h"
#include "ui/state/AppStorage.h"

namespace bonkora {

// StatsSection: the card with the lifetime total, the session's count and the mode's symbol. It
// only reads: nothing here adds the session's slaps to the stored total. Main thread.
class StatsSection final : public Card {
    Q_OBJECT

  public:
    StatsSection(SpankWrapper& spankWrapper, const AppStorage& slapCounterTotal);

    void redraw();

  private:
    SpankWrapper& spankWrapper;
    const AppStorage& slapCounterTotal;
    TextLabel* lifetimeValue;
    TextLabel* sessionValue;
    TextLabel* modeSymbol;
};

// FooterSection: the credit line and "Quit". Never changes. Main thread.
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
