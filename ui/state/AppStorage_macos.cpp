#include <QTimer>

#include "ui/state/AppStorage.h"

namespace bonkora {

namespace {

constexpr int lookMilliseconds = 800;

// The preferences of another program's making are visible at once, but nothing that Qt offers
// announces them: look often enough to show them within a second.
class Watch final : public QObject {
  public:
    explicit Watch(UserDefaults& defaults) {
        timer.setInterval(lookMilliseconds);
        connect(&timer, &QTimer::timeout, &defaults, &UserDefaults::changed);
        timer.start();
    }

  private:
    QTimer timer;
};

}  // namespace

// With the application's name this makes the bundle identifier's domain.
QString UserDefaults::organization() {
    return "bonkora.org";
}

std::unique_ptr<QObject> UserDefaults::makeWatch() {
    return std::make_unique<Watch>(*this);
}

}  // namespace bonkora
