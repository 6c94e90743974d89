// A slider over fixed steps, and the steps themselves.
#pragma once

#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "ui/controls/FocusRing.h"

namespace bonkora {

// SliderRange: the values that a slider can take: `first`, `first + step` and so on, each divided
// by `denominator`. Whole numbers divided once, because adding up 0.005 misses a third of the
// decimals by one bit. Any thread.
struct SliderRange {
    int first;
    int step;
    int lastTick;
    int denominator = 1;

    // `tick` goes from 0 to lastTick.
    constexpr double value(int tick) const {
        return static_cast<double>(first + step * tick) / denominator;
    }
    constexpr double lowest() const { return value(0); }
    constexpr double highest() const { return value(lastTick); }
    constexpr double stepSize() const { return static_cast<double>(step) / denominator; }

    // The tick whose value is nearest; 0 for what is not a number.
    int nearestTick(double wanted) const {
        const double ticks = (wanted * denominator - first) / step;
        return ticks > 0 ? static_cast<int>(std::lround(std::min(ticks, double{1.0} * lastTick)))
                         : 0;
    }
};

// StepSlider: a slider over the values of a SliderRange. Its signals report only what the user
// does: a value that the program displays never comes back as an edit.
//
// A drag begins with editingChanged(true) and ends with editingChanged(false); between the two,
// each new value is reported. A drag lasts from the press of the mouse, anywhere on the track, to
// its release; while a key is held; or over turns of the wheel, until half a second without one.
// Losing the focus ends the last two, and they begin only where they change the value. Only a
// slider that shows its focus follows the wheel.
//
// Escape takes a drag back: the value is what it was before, and the drag never ends. A drag that
// is under way when the slider is hidden never ends either.
class StepSlider final : public QWidget, public FocusTarget {
    Q_OBJECT

  public:
    StepSlider(const SliderRange& range, const QString& accessibleName);

    // Takes any number; the thumb stands at the nearest step.
    void display(double value);

    double value() const { return shown; }
    const SliderRange& values() const { return range; }
    // A whole drag in one call: how assistive technology sets a value.
    void edit(double value);

    QSize sizeHint() const override;
    QRectF focusBox() const override;
    qreal focusRadius() const override;

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
    // Of the whole application during a drag: Escape may go to any widget of the window.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    enum class Editing { none, mouse, key, wheel };

    void begin(Editing by);
    void end();
    void takeBack();
    void stopEditing();
    void step(Editing by, int steps);
    void moveTo(int tick);
    int tick() const { return range.nearestTick(shown); }
    qreal thumbCenter() const;
    int tickAt(qreal x) const;

    const SliderRange range;
    double shown;
    Editing editing = Editing::none;
    double before = 0;   // the value when the drag began
    qreal grip = 0;      // from the thumb's centre to where the mouse holds it
    int wheelAngle = 0;  // what is left of a step, in eighths of a degree
    QTimer quiet;
};

}  // namespace bonkora
