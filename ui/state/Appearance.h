// Appearance: whether the desktop is light or dark, and whether its user wants things to move.
#pragma once

#include <QObject>

namespace bonkora {

class Appearance final : public QObject {
    Q_OBJECT

  public:
    explicit Appearance(bool isDark = false) : dark(isDark) {}

    bool isDark() const { return dark; }
    // Asked whenever something could move; nobody waits for it to change.
    bool isMotionReduced() const { return motionReduced; }
    void setMotionReduced(bool isReduced) { motionReduced = isReduced; }
    void setDark(bool isDark) {
        if (isDark != dark) {
            dark = isDark;
            emit changed();
        }
    }

  signals:
    void changed();

  private:
    bool dark;
    bool motionReduced = false;
};

}  // namespace bonkora
