// PanelEnvironment: what the panel needs from the application around it.
#pragma once

#include <functional>
#include <memory>

#include "platform/Queues.h"
#include "ui/state/Appearance.h"

namespace bonkora {

struct PanelEnvironment {
    std::shared_ptr<platform::MainQueue> mainQueue;
    // Asks the application to end.
    std::function<void()> terminate;
    Appearance& appearance;  // outlives every panel
};

}  // namespace bonkora
