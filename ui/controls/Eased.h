// Eased: how far something has come on its way between off (0) and on (1).
#pragma once

#include <QVariantAnimation>

namespace bonkora {

enum class Transition { none, easeInOut };

class Eased final : public QVariantAnimation {
    Q_OBJECT

  public:
    explicit Eased(QObject* parent);

    // Sets out for one of the two ends: to be there at once, or 0.2 s from now. Nothing if that is
    // where it is going already.
    void setOn(bool isOn, Transition transition);

    bool isOn() const { return on; }
    qreal position() const { return at; }

  signals:
    void moved();

  private:
    void moveTo(qreal position);

    bool on = false;
    qreal at = 0;
};

}  // namespace bonkora
