// The settings card, with the slider blocks and the values that it works on.
#pragma once

#include <QWidget>
#include <cstdint>

#include "bridge/DetectorSettings.h"
#include "bridge/SpankWrapper.h"
#include "ui/controls/StepSlider.h"
#include "ui/controls/TextLabel.h"
#include "ui/controls/ToggleRow.h"
#include "ui/drawing/Decorations.h"
#include "ui/state/Appearance.h"

namespace bonkora {

// SliderValues: the panel's own copies of what the two sliders edit. The controller's settings
// follow only when a drag ends.
struct SliderValues {
    double cooldown = static_cast<double>(DetectorSettings{}.cooldownMs);  // milliseconds
    double sensitivity = DetectorSettings{}.minAmplitude;
};

// SliderBlock: a caption with its value, the slider, and the hints at its two ends.
class SliderBlock final : public QWidget {
    Q_OBJECT

  public:
    SliderBlock(const SliderRange& range, const QString& caption, const QString& lowerHint,
                const QString& upperHint);

    void display(double value, const QString& valueText);

  signals:
    // The slider's own signals, passed on.
    void valueChanged(double value);
    void editingChanged(bool isEditing);

  private:
    TextLabel* valueLabel;
    StepSlider* slider;
};

// SettingsSection: the card in which the detector is tuned. Each committed change is written to the
// controller and restarts a running detector.
class SettingsSection final : public Card {
    Q_OBJECT

  public:
    // `values`, which is written to while a slider is dragged, and `appearance` outlive the
    // section.
    SettingsSection(SpankWrapper& spankWrapper, SliderValues& values, const Appearance& appearance);

    void redraw();

    // Truncates toward zero. A value that is not finite or does not fit is a fatal error.
    static std::int64_t wholeMilliseconds(double milliseconds);

  private:
    void commitSensitivity();
    void commitCooldown();
    void flip(platform::Published<bool>& property);
    void apply();

    SpankWrapper& spankWrapper;
    SliderValues& values;
    const Appearance& appearance;
    SliderBlock* sensitivity;
    SliderBlock* cooldown;
    ToggleRow* volumeToggle;
    ToggleRow* fastToggle;
    // How the next redraw moves the switches: eased after a flip, otherwise at once.
    Transition transition = Transition::none;
};

}  // namespace bonkora
