#include <QTimer>

#include "ui/state/AppStorage.h"

namespace bonkora {

namespace {

constexpr int lookMilliseconds = 800;

// What another program stores can be read at once, but Qt offers nothing that announces it: look
// often enough to show it within a second.
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

// Together with the application's name, this is the domain of the bundle identifier.
QString UserDefaults::organization() {
    return "bonkora.org";
}

std::unique_ptr<QObject> UserDefaults::makeWatch() {
    return std::make_unique<Watch>(*this);
}

}  // namespace bonkora
