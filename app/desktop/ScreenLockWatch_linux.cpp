#include <QDBusConnection>

#include "app/desktop/ScreenLockWatch.h"
#include "app/desktop/SessionBus.h"

namespace bonkora {

namespace {

// The interfaces with which the desktops' screen savers announce a change of their state: that of
// the freedesktop.org proposal, and those of desktops that have one of their own.
constexpr const char* screenSavers[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                        "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver",
                                        "org.xfce.ScreenSaver"};

}  // namespace

ScreenLockWatch::ScreenLockWatch() {
    if (sessionBus::isAvailable()) {
        QDBusConnection session = QDBusConnection::sessionBus();
        for (const char* saver : screenSavers) {
            session.connect({}, {}, saver, "ActiveChanged", this, SLOT(hearState(bool)));
        }
    }
    QDBusConnection system = QDBusConnection::systemBus();
    if (system.isConnected()) {
        system.connect({}, {}, "org.freedesktop.login1.Session", "Lock", this, SLOT(hearLock()));
        system.connect({}, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                       "PrepareForSleep", this, SLOT(hearState(bool)));
    }
}

void ScreenLockWatch::hearState(bool begins) {
    if (begins) {
        emit locking();
    }
}

void ScreenLockWatch::hearLock() {
    emit locking();
}

}  // namespace bonkora
