// UserDefaults: the user's stored values of this application, read and never written. On Linux the
// file Bonkora/Bonkora.conf in the user's configuration folder, group General; on macOS the domain
// of the bundle identifier. Main thread.
#pragma once

#include <QObject>
#include <QSettings>
#include <cstdint>
#include <memory>

namespace bonkora {

class UserDefaults final : public QObject {
    Q_OBJECT

  public:
    UserDefaults();
    ~UserDefaults() override;

    // As stored now, by whatever program; `otherwise` where nothing is stored under that key, and
    // 0 where what is stored is no integer.
    std::int64_t integer(const QString& key, std::int64_t otherwise);

  signals:
    // Something may have been stored, by this or another program, within the last second.
    void changed();

  private:
    // How the settings of one system are addressed, and what notices that they have changed.
    static QString organization();
    std::unique_ptr<QObject> makeWatch();

    QSettings settings;
    const std::unique_ptr<QObject> watch;
};

}  // namespace bonkora
