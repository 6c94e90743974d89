#include "ui/panel/SettingsSection.h"

#include "platform/Console.h"
#include "platform/Text.h"
#include "ui/drawing/Decorations.h"
#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int settingSpacing = 10;
constexpr int sliderSpacing = 3;
constexpr int sensitivityDecimals = 3;
constexpr SliderRange sensitivityRange{.first = 10, .step = 5, .lastTick = 98, .denominator = 1000};
constexpr SliderRange cooldownRange{.first = 100, .step = 50, .lastTick = 58};

QHBoxLayout* apart(QWidget* left, QWidget* right) {
    auto* row = panelLayout::padded(new QHBoxLayout, 0, 0);
    row->addWidget(left);
    row->addStretch();
    row->addWidget(right);
    return row;
}

TextLabel* hint(const QString& text) {
    return new TextLabel(textStyle::hint.monospaced(), colorRole::secondary, text);
}

}  // namespace

SliderBlock::SliderBlock(const SliderRange& range, const QString& caption, const QString& lowerHint,
                         const QString& upperHint)
    : valueLabel(new TextLabel(textStyle::caption.monospaced(), colorRole::accent, {},
                               TextLabel::Fit::elided)),
      slider(new StepSlider(range, caption)) {
    auto* stack = panelLayout::padded(new QVBoxLayout(this), 0, 0, sliderSpacing);
    stack->addLayout(apart(
        new TextLabel(textStyle::caption.monospaced(), colorRole::primary, caption), valueLabel));
    stack->addWidget(slider);
    stack->addLayout(apart(hint(lowerHint), hint(upperHint)));
    connect(slider, &StepSlider::valueChanged, this, &SliderBlock::valueChanged);
    connect(slider, &StepSlider::editingChanged, this, &SliderBlock::editingChanged);
}

void SliderBlock::display(double value, const QString& valueText) {
    slider->display(value);
    valueLabel->display(valueText);
}

SettingsSection::SettingsSection(SpankWrapper& wrapper, SliderValues& theValues,
                                 const Appearance& theAppearance)
    : spankWrapper(wrapper),
      values(theValues),
      appearance(theAppearance),
      sensitivity(new SliderBlock(sensitivityRange, tr("Sensitivity"), tr("🦋 Butterfly"),
                                  tr("💪 Full force"))),
      cooldown(new SliderBlock(cooldownRange, tr("Cooldown"), tr("⚡ Rapid-fire"),
                               tr("🎭 Dramatic pause"))),
      volumeToggle(new ToggleRow(tr("Volume scales with force"),
                                 tr("Gentle tap = whisper. Full slap = max."))),
      fastToggle(new ToggleRow(tr("Fast detection"), tr("Shorter cooldown, higher sensitivity."))) {
    auto* stack = panelLayout::padded(new QVBoxLayout(this), padding, padding, settingSpacing);
    stack->addWidget(new TextLabel(textStyle::caption.monospaced().weighing(QFont::DemiBold),
                                   colorRole::secondary, tr("Settings")));
    stack->addWidget(sensitivity);
    stack->addWidget(new Divider);
    stack->addWidget(cooldown);
    stack->addWidget(new Divider);
    stack->addWidget(volumeToggle);
    stack->addWidget(fastToggle);

    connect(sensitivity, &SliderBlock::valueChanged, this, [this](double value) {
        values.sensitivity = value;
        redraw();
    });
    connect(cooldown, &SliderBlock::valueChanged, this, [this](double value) {
        values.cooldown = value;
        redraw();
    });
    connect(sensitivity, &SliderBlock::editingChanged, this, [this](bool isEditing) {
        if (!isEditing) {
            commitSensitivity();
        }
    });
    connect(cooldown, &SliderBlock::editingChanged, this, [this](bool isEditing) {
        if (!isEditing) {
            commitCooldown();
        }
    });
    connect(volumeToggle, &ToggleRow::clicked, this, [this] { flip(spankWrapper.volumeScaling); });
    connect(fastToggle, &ToggleRow::clicked, this, [this] { flip(spankWrapper.fastMode); });
}

void SettingsSection::redraw() {
    sensitivity->display(values.sensitivity, QString::fromStdString(platform::fixedDecimal(
                                                 values.sensitivity, sensitivityDecimals)));
    cooldown->display(values.cooldown, tr("%1ms").arg(wholeMilliseconds(values.cooldown)));
    volumeToggle->display(spankWrapper.volumeScaling, transition);
    fastToggle->display(spankWrapper.fastMode, transition);
    transition = Transition::none;
}

std::int64_t SettingsSection::wholeMilliseconds(double milliseconds) {
    constexpr double limit = 9223372036854775808.0;  // two to the power of 63
    if (!(milliseconds >= -limit && milliseconds < limit)) {
        platform::fatalError("a cooldown that is no whole number of milliseconds");
    }
    return static_cast<std::int64_t>(milliseconds);
}

void SettingsSection::commitSensitivity() {
    spankWrapper.minAmplitude = values.sensitivity;
    apply();
}

void SettingsSection::commitCooldown() {
    spankWrapper.cooldownMs = wholeMilliseconds(values.cooldown);
    apply();
}

void SettingsSection::flip(platform::Published<bool>& property) {
    transition = appearance.isMotionReduced() ? Transition::none : Transition::easeInOut;
    property = !property;
    apply();
}

void SettingsSection::apply() {
    if (spankWrapper.isRunning) {
        spankWrapper.restart();
    }
}

}  // namespace bonkora
