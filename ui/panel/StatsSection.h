// StatsSection: the card with the lifetime total, the session's count and the mode's symbol. It
// only reads: nothing here adds the session's slaps to the stored total. Main thread.
#pragma once

#include "bridge/SpankWrapper.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Card.h"
#include "ui/state/AppStorage.h"

namespace bonkora {

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

}  // namespace bonkora
