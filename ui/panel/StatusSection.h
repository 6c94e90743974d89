// StatusSection: the card that tells whether the detector listens, and how hard the last slap was.
// Main thread.
#pragma once

#include "bridge/SpankWrapper.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Card.h"
#include "ui/drawing/StatusDot.h"

namespace bonkora {

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
