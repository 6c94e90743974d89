// The stored values of this application, and one integer of them that can be observed.
#pragma once

#include <QObject>
#include <QSettings>
#include <QString>
#include <cstdint>
#include <memory>

#include "platform/ObservableObject.h"

namespace bonkora {

// UserDefaults: the user's stored values, read and never written. On Linux they are in the group
// General of Bonkora/Bonkora.conf in the user's configuration folder, on macOS in the domain of the
// bundle identifier.
class UserDefaults final : public QObject {
    Q_OBJECT

  public:
    UserDefaults();
    ~UserDefaults() override;

    // The value stored at this moment, by whatever program: `otherwise` if nothing is stored under
    // the key, 0 if what is stored is not an integer.
    std::int64_t integer(const QString& key, std::int64_t otherwise);

  signals:
    // Something may have been stored, by this or another program, within the last second.
    void changed();

  private:
    // Each system has its own way to address the settings and to notice that they have changed.
    static QString organization();
    std::unique_ptr<QObject> makeWatch();

    QSettings settings;
    const std::unique_ptr<QObject> watch;
};

// AppStorage: an integer bound to a key of the user defaults and never written here. It announces
// every change that any program stores, before it takes the new value.
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
