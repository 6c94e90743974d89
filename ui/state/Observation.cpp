#include "ui/state/Observation.h"

#include <utility>

namespace bonkora {

Observation::Observation(std::function<void()> theRedraw) : redraw(std::move(theRedraw)) {}

void Observation::observe(platform::ObservableObject& object) {
    subscriptions.push_back(object.objectWillChange.sink([this] { request(); }));
}

void Observation::request() {
    if (isRequested) {
        return;
    }
    isRequested = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isRequested = false;
            redraw();
        },
        Qt::QueuedConnection);
}

}  // namespace bonkora
