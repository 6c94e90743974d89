// Observation: turns announcements of coming changes into redraws. The first one asks for a redraw
// in the next turn of the event loop, when the values have been stored; later ones join it.
#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "platform/ObservableObject.h"

namespace bonkora {

class Observation final : public QObject {
  public:
    explicit Observation(std::function<void()> redraw);

    // Until this is destroyed.
    void observe(platform::ObservableObject& object);

  private:
    void request();

    const std::function<void()> redraw;
    bool isRequested = false;
    std::vector<platform::ObservableObjectPublisher::Subscription> subscriptions;
};

}  // namespace bonkora
