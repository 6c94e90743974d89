// A slider over fixed steps, and the steps themselves.
#pragma once

#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "ui/controls/FocusRing.h"

namespace bonkora {

// SliderRange: the values that a slider can take: `first`, `first + step`, ... over `denominator`.
// Whole numbers divided once, because adding 0.005 to 0.01 again and again misses a third of the
// decimals by one bit. Values; any thread.
struct SliderRange {
    int first;
    int step;
    int lastTick;
    int denominator = 1;

    // Of a tick from 0 to lastTick.
    constexpr double value(int tick) const {
        return static_cast<double>(first + step * tick) / denominator;
    }
    constexpr double lowest() const { return value(0); }
    constexpr double highest() const { return value(lastTick); }
    constexpr double stepSize() const { return static_cast<double>(step) / denominator; }

    // Whose value is nearest; the first for what is no number.
    int nearestTick(double wanted) const {
        const double ticks = (wanted * denominator - first) / step;
        return ticks > 0 ? static_cast<int>(std::lround(std::min(ticks, double{1.0} * lastTick)))
                         : 0;
    }
};

// StepSlider: a slider over the values of a SliderRange, for the user alone: what the program shows
// in it never comes back as an edit. Main thread.
//
// A drag begins with editingChanged(true) and ends with editingChanged(false); between the two each
// new value is reported. One drag is: a press of the mouse until its release, anywhere on the
// track; steps of a held key until its release; steps of the wheel until half a second of quiet;
// loss of the focus ends either. A slider that is hidden in mid-drag never ends it.
class StepSlider final : public QWidget {
    Q_OBJECT

  public:
    StepSlider(const SliderRange& range, const QString& accessibleName);

    // Any number: the thumb stands at the nearest step.
    void display(double value);

    double value() const { return shown; }
    const SliderRange& values() const { return range; }
    // As one drag of its own: how assistive technology sets a value.
    void edit(double value);

    QSize sizeHint() const override;

  signals:
    void valueChanged(double value);
    void editingChanged(bool isEditing);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    enum class Editing { none, mouse, key, wheel };

    void begin(Editing by);
    void end();
    void moveTo(int tick);
    int tick() const { return range.nearestTick(shown); }
    qreal thumbCenter() const;
    int tickAt(qreal x) const;

    const SliderRange range;
    double shown;
    Editing editing = Editing::none;
    qreal grip = 0;      // from the thumb's centre to where the mouse holds it
    int wheelAngle = 0;  // what is left of a step, in eighths of a degree
    QTimer quiet;
    FocusRing ring;
};

}  // namespace bonkora
