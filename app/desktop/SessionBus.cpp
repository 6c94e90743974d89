#include "app/desktop/SessionBus.h"

#include <QDBusConnection>
#include <QFileInfo>

namespace bonkora::sessionBus {

namespace {

constexpr char addressVariable[] = "DBUS_SESSION_BUS_ADDRESS";

}  // namespace

void forbidAutolaunch() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool isThere = !qEnvironmentVariableIsEmpty(addressVariable) ||
                         (!runtime.isEmpty() && QFileInfo::exists(runtime + "/bus"));
    if (!isThere) {
        qputenv(addressVariable, "unix:path=/dev/null");
    }
}

bool isAvailable() {
    return QDBusConnection::sessionBus().isConnected();
}

}  // namespace bonkora::sessionBus
