#include <QTimer>

#include "ui/UserDefaults.h"

namespace bonkora {

namespace {

constexpr int lookMilliseconds = 800;

}  // namespace

// The preferences of another program's making are visible at once, but nothing that Qt offers
// announces them: look often enough to show them within a second.
class UserDefaults::Watch {
  public:
    explicit Watch(UserDefaults& defaults) {
        timer.setInterval(lookMilliseconds);
        connect(&timer, &QTimer::timeout, &defaults, &UserDefaults::changed);
        timer.start();
    }

  private:
    QTimer timer;
};

// With the application's name this makes the bundle identifier's domain.
QString UserDefaults::organization() {
    return "bonkora.org";
}

UserDefaults::UserDefaults()
    : settings(QSettings::NativeFormat, QSettings::UserScope, organization(), "Bonkora") {
    settings.setFallbacksEnabled(false);
    watch = std::make_unique<Watch>(*this);
}

UserDefaults::~UserDefaults() = default;

}  // namespace bonkora
