#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <utility>

#include "ui/state/AppStorage.h"

namespace bonkora {

namespace {

// Watches the file, and the innermost folder of its path that exists. Creates neither.
class Watch final : public QObject {
  public:
    Watch(UserDefaults& theDefaults, QString theFile)
        : defaults(theDefaults), file(std::move(theFile)) {
        const auto onChange = [this] {
            follow();
            emit defaults.changed();
        };
        connect(&watcher, &QFileSystemWatcher::fileChanged, this, onChange);
        connect(&watcher, &QFileSystemWatcher::directoryChanged, this, onChange);
        follow();
    }

  private:
    // Called after every change: a replaced file is a new file, and a folder may appear or go.
    void follow() {
        QString folder = innermostFolder();
        // Until nothing has changed meanwhile: a folder that is made after the search for it and
        // before its parent is watched is announced by nobody.
        for (QString watched; folder != watched; folder = innermostFolder()) {
            watched = folder;
            watchFolder(watched);
        }
        // The folder first: it announces a file that appears before the file itself is watched.
        if (!watcher.files().contains(file) && QFileInfo::exists(file)) {
            watcher.addPath(file);
        }
    }

    QString innermostFolder() const {
        QDir folder = QFileInfo(file).dir();
        while (!folder.exists() && !folder.isRoot()) {
            folder.setPath(QFileInfo(folder.path()).path());
        }
        return folder.path();
    }

    void watchFolder(const QString& folder) {
        for (const QString& path : watcher.files() + watcher.directories()) {
            if (path != folder && path != file) {
                watcher.removePath(path);
            }
        }
        if (!watcher.directories().contains(folder)) {
            watcher.addPath(folder);
        }
    }

    UserDefaults& defaults;
    const QString file;
    QFileSystemWatcher watcher;
};

}  // namespace

QString UserDefaults::organization() {
    return "Bonkora";
}

std::unique_ptr<QObject> UserDefaults::makeWatch() {
    return std::make_unique<Watch>(*this, settings.fileName());
}

}  // namespace bonkora
