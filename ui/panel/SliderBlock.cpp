#include "ui/panel/SliderBlock.h"

#include "ui/panel/PanelLayout.h"

namespace bonkora {

namespace {

constexpr int lineSpacing = 3;

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
    : valueLabel(new TextLabel(textStyle::caption.monospaced(), colorRole::accent)),
      slider(new StepSlider(range, caption)) {
    auto* stack = panelLayout::padded(new QVBoxLayout(this), 0, 0, lineSpacing);
    stack->addLayout(apart(
        new TextLabel(textStyle::caption.monospaced(), colorRole::primary, caption), valueLabel));
    stack->addWidget(slider);
    stack->addLayout(apart(hint(lowerHint), hint(upperHint)));
    connect(slider, &StepSlider::valueChanged, this, &SliderBlock::valueChanged);
    connect(slider, &StepSlider::editingChanged, this, &SliderBlock::editingChanged);
}

void SliderBlock::show(double value, const QString& valueText) {
    slider->show(value);
    valueLabel->show(valueText);
}

}  // namespace bonkora
