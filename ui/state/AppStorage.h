// Stored values: the file or domain that holds them, and one integer of it that can be observed.
#pragma once

#include <QObject>
#include <QSettings>
#include <QString>
#include <cstdint>
#include <memory>

#include "platform/ObservableObject.h"

namespace bonkora {

// UserDefaults: the user's stored values of this application, read and never written. On Linux the
// file Bonkora/Bonkora.conf in the user's configuration folder, group General; on macOS the domain
// of the bundle identifier. Main thread.
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

// AppStorage: an integer bound to a key of the user defaults. Announces, before it takes the new
// value, every change that any program stores under the key. Read only here. Main thread.
class AppStorage final : public platform::ObservableObject {
  public:
    AppStorage(const QString& key, std::int64_t initial);
    AppStorage(const AppStorage&) = delete;
    AppStorage& operator=(const AppStorage&) = delete;
    ~AppStorage() = default;

    std::int64_t get() const { return value; }

  private:
    void read();

    const QString key;
    const std::int64_t initial;
    UserDefaults defaults;
    std::int64_t value;
};

}  // namespace bonkora
