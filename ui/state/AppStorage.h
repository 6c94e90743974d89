// AppStorage: an integer bound to a key of the user defaults. Announces, before it takes the new
// value, every change that any program stores under the key. Read only here. Main thread.
#pragma once

#include <QString>
#include <cstdint>

#include "platform/ObservableObject.h"
#include "ui/state/UserDefaults.h"

namespace bonkora {

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
