// Observation: turns announcements of coming changes into redraws. The first announcement asks for
// one redraw in the next turn of the event loop, when the values are stored; later ones join it.
// Main thread.
#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "platform/ObservableObject.h"

namespace bonkora {

class Observation final : public QObject {
  public:
    explicit Observation(std::function<void()> redraw);

    // For as long as this lives.
    void observe(platform::ObservableObject& object);

  private:
    void request();

    const std::function<void()> redraw;
    bool isRequested = false;
    std::vector<platform::ObservableObjectPublisher::Subscription> subscriptions;
};

}  // namespace bonkora
