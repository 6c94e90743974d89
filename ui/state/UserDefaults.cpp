#include "ui/state/UserDefaults.h"

namespace bonkora {

UserDefaults::UserDefaults()
    : settings(QSettings::NativeFormat, QSettings::UserScope, organization(), "Bonkora"),
      watch(makeWatch()) {
    settings.setFallbacksEnabled(false);
}

UserDefaults::~UserDefaults() = default;

std::int64_t UserDefaults::integer(const QString& key, std::int64_t otherwise) {
    settings.sync();
    const QVariant stored = settings.value(key);
    bool isInteger = false;
    const std::int64_t number = stored.toLongLong(&isInteger);
    if (!stored.isValid()) {
        return otherwise;
    }
    return isInteger ? number : 0;
}

}  // namespace bonkora
