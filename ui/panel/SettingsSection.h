// SettingsSection: the card in which the detector is tuned. Each committed change is written to the
// controller and restarts a running detector. Main thread.
#pragma once

#include <cstdint>

#include "bridge/SpankWrapper.h"
#include "ui/controls/ToggleRow.h"
#include "ui/drawing/Card.h"
#include "ui/panel/SliderBlock.h"
#include "ui/panel/SliderValues.h"

namespace bonkora {

class SettingsSection final : public Card {
    Q_OBJECT

  public:
    // `values` outlives the section, which writes to it while a slider is dragged.
    SettingsSection(SpankWrapper& spankWrapper, SliderValues& values);

    void redraw();

    // Truncated toward zero. What is not finite or does not fit ends the program.
    static std::int64_t wholeMilliseconds(double milliseconds);

  private:
    void commitSensitivity();
    void commitCooldown();
    void flip(platform::Published<bool>& property);
    void apply();

    SpankWrapper& spankWrapper;
    SliderValues& values;
    SliderBlock* sensitivity;
    SliderBlock* cooldown;
    ToggleRow* volumeToggle;
    ToggleRow* fastToggle;
};

}  // namespace bonkora
