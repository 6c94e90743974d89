// ScreenLockWatch: tells when the screen is about to be locked or the machine to sleep, so that
// nothing of ours holds the pointer, which a screen locker needs for itself. One implementation for
// each system.
#pragma once

#include <QObject>

namespace bonkora {

class ScreenLockWatch final : public QObject {
    Q_OBJECT

  public:
    ScreenLockWatch();

  signals:
    void locking();

  private slots:
    // Both the screen savers' and the session manager's signals say true at the beginning and false
    // at the end.
    void hearState(bool begins);
    void hearLock();
};

}  // namespace bonkora
