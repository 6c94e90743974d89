#include "app/desktop/SingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>
#include <cerrno>
#include <utility>

namespace bonkora {

namespace {

using platform::UniqueDescriptor;

bool isOurs(const UniqueDescriptor& file, mode_t type) {
    struct stat about {};
    return file && ::fstat(file.get(), &about) == 0 && (about.st_mode & S_IFMT) == type &&
           about.st_uid == ::geteuid() && (about.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// That folder, where nobody else can make or replace anything in it.
UniqueDescriptor ownFolder(const QString& path) {
    UniqueDescriptor folder(::open(QFile::encodeName(path).constData(),
                                   O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return isOurs(folder, S_IFDIR) ? std::move(folder) : UniqueDescriptor();
}

UniqueDescriptor lockFolder() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime)) {
        if (UniqueDescriptor folder = ownFolder(runtime)) {
            return folder;
        }
    }
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    const QString own = caches + "/Bonkora";
    QDir().mkpath(caches);
    ::mkdir(QFile::encodeName(own).constData(), S_IRWXU);
    return ownFolder(own);
}

QByteArray lockName() {
    const QString display = qEnvironmentVariable("WAYLAND_DISPLAY", qEnvironmentVariable("DISPLAY"))
                                .replace(QRegularExpression("[^A-Za-z0-9.]"), "-");
    return QString("bonkora-%1%2.lock").arg(::getuid()).arg(display).toLatin1();
}

}  // namespace

bool InstanceLock::take() {
    const UniqueDescriptor folder = lockFolder();
    if (!folder) {
        return true;
    }
    file.reset(::openat(folder.get(), lockName().constData(),
                        O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    return !isOurs(file, S_IFREG) || ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 ||
           errno != EWOULDBLOCK;
}

}  // namespace bonkora
