// SliderBlock: a caption with its value, the slider, and the hints at its two ends. Main thread.
#pragma once

#include <QWidget>

#include "ui/controls/StepSlider.h"
#include "ui/controls/TextLabel.h"

namespace bonkora {

class SliderBlock final : public QWidget {
    Q_OBJECT

  public:
    SliderBlock(const SliderRange& range, const QString& caption, const QString& lowerHint,
                const QString& upperHint);

    void show(double value, const QString& valueText);
    using QWidget::show;

  signals:
    // Of the slider.
    void valueChanged(double value);
    void editingChanged(bool isEditing);

  private:
    TextLabel* valueLabel;
    StepSlider* slider;
};

}  // namespace bonkora
