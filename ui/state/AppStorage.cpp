#include "ui/state/AppStorage.h"

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

AppStorage::AppStorage(const QString& theKey, std::int64_t theInitial)
    : key(theKey), initial(theInitial), value(defaults.integer(key, initial)) {
    QObject::connect(&defaults, &UserDefaults::changed, &defaults, [this] { read(); });
}

void AppStorage::read() {
    const std::int64_t stored = defaults.integer(key, initial);
    if (stored != value) {
        objectWillChange.send();
        value = stored;
    }
}

}  // namespace bonkora
