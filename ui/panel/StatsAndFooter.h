// The two sections at the bottom of the panel.
#pragma once

#include <QWidget>

#include "bridge/SpankWrapper.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Decorations.h"
#include "ui/panel/PanelEnvironment.h"
#include "ui/state/AppStorage.h"

namespace bonkora {

// StatsSection: the card with the lifetime total, the session's count and the mode's symbol. It
// only reads; the session's slaps are never added to the stored total.
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

// FooterSection: the credit line and "Quit". Never changes.
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
