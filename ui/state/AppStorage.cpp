#include "ui/state/AppStorage.h"

namespace bonkora {

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
