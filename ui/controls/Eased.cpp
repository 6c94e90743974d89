#include "ui/controls/Eased.h"

#include <QEasingCurve>
#include <QPointF>
#include <QSignalBlocker>

namespace bonkora {

namespace {

constexpr int transitionMilliseconds = 200;

QEasingCurve easeInOut() {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
    return curve;
}

}  // namespace

Eased::Eased(QObject* parent) : QVariantAnimation(parent) {
    setDuration(transitionMilliseconds);
    setEasingCurve(easeInOut());
    connect(this, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { moveTo(value.toReal()); });
}

void Eased::setOn(bool isOn, Transition transition) {
    if (isOn == on) {
        return;
    }
    on = isOn;
    const qreal end = on ? 1 : 0;
    stop();
    if (transition == Transition::easeInOut) {
        {
            const QSignalBlocker notOnItsWay(this);
            setStartValue(at);
            setEndValue(end);
        }
        start();
        emit moved();  // what depends on isOn() alone changes at once
    } else {
        moveTo(end);
    }
}

void Eased::moveTo(qreal position) {
    at = position;
    emit moved();
}

}  // namespace bonkora
