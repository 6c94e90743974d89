#include "ui/controls/StepSlider.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>
#include <optional>

#include "ui/drawing/Colors.h"

namespace bonkora {

namespace {

constexpr int trackHeight = 4;
constexpr int thumbSize = 16;
constexpr int sliderHeight = 20;
constexpr int ringGap = 2;
constexpr int pageSteps = 10;
constexpr int anglePerStep = 120;
constexpr int quietMilliseconds = 500;
constexpr QColor thumbEdge(0, 0, 0, 112);

std::optional<int> stepsOf(int key, int lastTick) {
    switch (key) {
        case Qt::Key_Left:
        case Qt::Key_Down:
            return -1;
        case Qt::Key_Right:
        case Qt::Key_Up:
            return 1;
        case Qt::Key_PageDown:
            return -pageSteps;
        case Qt::Key_PageUp:
            return pageSteps;
        case Qt::Key_Home:
            return -lastTick;
        case Qt::Key_End:
            return lastTick;
        default:
            return std::nullopt;
    }
}

}  // namespace

StepSlider::StepSlider(const SliderRange& theRange, const QString& accessibleName)
    : range(theRange), shown(theRange.lowest()) {
    setAccessibleName(accessibleName);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    quiet.setSingleShot(true);
    quiet.setInterval(quietMilliseconds);
    connect(&quiet, &QTimer::timeout, this, &StepSlider::end);
}

void StepSlider::display(double value) {
    if (value != shown) {
        shown = value;
        update();
        QAccessibleValueChangeEvent event(this, shown);
        QAccessible::updateAccessibility(&event);
    }
}

void StepSlider::edit(double value) {
    end();
    begin(Editing::key);
    moveTo(range.nearestTick(value));
    end();
}

void StepSlider::begin(Editing by) {
    if (editing == Editing::none) {
        editing = by;
        before = shown;
        qApp->installEventFilter(this);
        emit editingChanged(true);
    }
}

void StepSlider::end() {
    const bool wasEditing = editing != Editing::none;
    stopEditing();
    if (wasEditing) {
        emit editingChanged(false);
    }
}

void StepSlider::takeBack() {
    stopEditing();
    if (shown != before) {
        display(before);
        emit valueChanged(shown);
    }
}

void StepSlider::stopEditing() {
    quiet.stop();
    wheelAngle = 0;
    qApp->removeEventFilter(this);
    editing = Editing::none;
    update();
}

void StepSlider::step(Editing by, int steps) {
    if (std::clamp(tick() + steps, 0, range.lastTick) != tick()) {
        begin(by);
        moveTo(tick() + steps);
    }
}

void StepSlider::moveTo(int newTick) {
    newTick = std::clamp(newTick, 0, range.lastTick);
    if (newTick != tick()) {
        display(range.value(newTick));
        emit valueChanged(shown);
    }
}

qreal StepSlider::thumbCenter() const {
    return thumbSize / 2.0 + (width() - thumbSize) * static_cast<qreal>(tick()) / range.lastTick;
}

int StepSlider::tickAt(qreal x) const {
    const qreal room = std::max(width() - thumbSize, 1);
    return static_cast<int>(std::lround((x - thumbSize / 2.0) / room * range.lastTick));
}

QSize StepSlider::sizeHint() const {
    return {100, sliderHeight};
}

void StepSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    end();
    begin(Editing::mouse);
    const qreal distance = event->position().x() - thumbCenter();
    const bool isOnThumb = std::abs(distance) <= thumbSize / 2.0;
    grip = isOnThumb ? distance : 0;
    if (!isOnThumb) {
        moveTo(tickAt(event->position().x()));
    }
    update();
}

void StepSlider::mouseMoveEvent(QMouseEvent* event) {
    if (editing == Editing::mouse) {
        moveTo(tickAt(event->position().x() - grip));
    }
}

void StepSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && editing == Editing::mouse) {
        end();
    }
}

void StepSlider::keyPressEvent(QKeyEvent* event) {
    const std::optional<int> steps = stepsOf(event->key(), range.lastTick);
    if (!steps || editing == Editing::mouse) {
        event->ignore();
        return;
    }
    if (editing == Editing::wheel) {
        end();
    }
    step(Editing::key, *steps);
}

void StepSlider::keyReleaseEvent(QKeyEvent* event) {
    if (editing == Editing::key && !event->isAutoRepeat() &&
        stepsOf(event->key(), range.lastTick)) {
        end();
    } else {
        event->ignore();
    }
}

void StepSlider::wheelEvent(QWheelEvent* event) {
    const bool isInUse = hasFocus() && showsFocus();
    if (!isInUse || editing == Editing::mouse || editing == Editing::key) {
        event->ignore();  // then the wheel scrolls the panel
        return;
    }
    wheelAngle += event->angleDelta().y();
    const int steps = wheelAngle / anglePerStep;
    wheelAngle -= steps * anglePerStep;
    step(Editing::wheel, steps);
    if (editing == Editing::wheel && steps != 0) {
        quiet.start();
    }
}

void StepSlider::focusInEvent(QFocusEvent* event) {
    followFocus(*event);
    QWidget::focusInEvent(event);
}

void StepSlider::focusOutEvent(QFocusEvent* event) {
    followFocus(*event);
    if (editing != Editing::mouse) {
        end();
    }
    QWidget::focusOutEvent(event);
}

void StepSlider::hideEvent(QHideEvent*) {
    stopEditing();
}

bool StepSlider::eventFilter(QObject*, QEvent* event) {
    const bool isPress = event->type() == QEvent::KeyPress;
    if ((!isPress && event->type() != QEvent::ShortcutOverride) ||
        static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) {
        return false;
    }
    event->accept();  // a shortcut that is overridden comes as a press
    if (isPress) {
        takeBack();
    }
    return true;
}

QRectF StepSlider::focusBox() const {
    return {thumbCenter() - thumbSize / 2.0, (height() - thumbSize) / 2.0, thumbSize, thumbSize};
}

qreal StepSlider::focusRadius() const {
    return thumbSize / 2.0;
}

void StepSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF track(0, (height() - trackHeight) / 2.0, width(), trackHeight);
    const qreal center = thumbCenter();
    if (hasFocus() && showsFocus()) {
        // The track stops short of the ring, which could not be told from it.
        const int gap = FocusRing::reach + ringGap;
        painter.setClipRegion(QRegion(rect()) -
                              focusBox().adjusted(-gap, 0, gap, 0).toAlignedRect());
    }
    painter.setBrush(palette().color(colorRole::track));
    painter.drawRoundedRect(track, trackHeight / 2.0, trackHeight / 2.0);
    painter.setBrush(palette().color(colorRole::accent));
    painter.drawRoundedRect(track.adjusted(0, 0, center - width(), 0), trackHeight / 2.0,
                            trackHeight / 2.0);
    painter.setClipping(false);

    painter.setPen(QPen(thumbEdge, 1));
    painter.setBrush(editing == Editing::none ? QColor(Qt::white) : QColor(0xF0, 0xF0, 0xF0));
    painter.drawEllipse(focusBox().adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace bonkora
