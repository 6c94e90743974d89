#include "app/desktop/SingleInstance.h"

#include <unistd.h>

#include <QDir>
#include <QRegularExpression>

namespace bonkora {

namespace {

QString lockPath() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString display = qEnvironmentVariable("WAYLAND_DISPLAY", qEnvironmentVariable("DISPLAY"))
                                .replace(QRegularExpression("[^A-Za-z0-9.]"), "-");
    return QString("%1/bonkora-%2%3.lock")
        .arg(runtime.isEmpty() ? QDir::tempPath() : runtime)
        .arg(::getuid())
        .arg(display);
}

}  // namespace

InstanceLock::InstanceLock() : file(lockPath()) {
    file.setStaleLockTime(0);
}

bool InstanceLock::take() {
    return file.tryLock() || file.error() != QLockFile::LockFailedError;
}

}  // namespace bonkora
