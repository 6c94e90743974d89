#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>

#include "ui/UserDefaults.h"

namespace bonkora {

// Watches the file and the folder nearest to it that exists; makes neither.
class UserDefaults::Watch {
  public:
    explicit Watch(UserDefaults& theDefaults)
        : defaults(theDefaults), file(theDefaults.settings.fileName()) {
        const auto onChange = [this] {
            follow();
            emit defaults.changed();
        };
        connect(&watcher, &QFileSystemWatcher::fileChanged, &defaults, onChange);
        connect(&watcher, &QFileSystemWatcher::directoryChanged, &defaults, onChange);
        follow();
    }

  private:
    // A file that was replaced is another file, and a folder may be made at any time.
    void follow() {
        QDir folder = QFileInfo(file).dir();
        while (!folder.exists() && !folder.isRoot()) {
            folder.setPath(QFileInfo(folder.path()).path());
        }
        for (const QString& path : watcher.files() + watcher.directories()) {
            if (path != folder.path() && path != file) {
                watcher.removePath(path);
            }
        }
        // The folder first: a file that appears between the two is announced by it.
        if (!watcher.directories().contains(folder.path())) {
            watcher.addPath(folder.path());
        }
        if (!watcher.files().contains(file) && QFileInfo::exists(file)) {
            watcher.addPath(file);
        }
    }

    UserDefaults& defaults;
    const QString file;
    QFileSystemWatcher watcher;
};

QString UserDefaults::organization() {
    return "Bonkora";
}

UserDefaults::UserDefaults()
    : settings(QSettings::NativeFormat, QSettings::UserScope, organization(), "Bonkora") {
    settings.setFallbacksEnabled(false);
    watch = std::make_unique<Watch>(*this);
}

UserDefaults::~UserDefaults() = default;

}  // namespace bonkora
