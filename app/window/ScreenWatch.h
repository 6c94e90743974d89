// ScreenWatch: tells when the layout of the screens has changed: one came, went, or has another
// size or another share of it taken by bars. Told once the changes have come to rest, for bars move
// after their screen.
#pragma once

#include <QObject>
#include <QTimer>

class QScreen;

namespace bonkora {

class ScreenWatch final : public QObject {
    Q_OBJECT

  public:
    ScreenWatch();

  signals:
    void changed();

  private:
    void watch(QScreen* screen);

    QTimer rest;
};

}  // namespace bonkora
