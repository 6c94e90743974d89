// Platform: everything the controller takes of the operating system, in one value, so that a test
// can put its own in place of any piece. The default is the real system.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Bundle.h"
#include "platform/Console.h"
#include "platform/Process.h"
#include "platform/Queues.h"

namespace bonkora::platform {

struct Platform {
    std::shared_ptr<MainQueue> mainQueue;
    std::shared_ptr<GlobalQueue> globalQueue;
    std::shared_ptr<Console> console;
    Bundle bundle;
    // Ends in a slash. Asked anew at every launch, like the runner's path.
    std::function<std::string()> temporaryDirectory;
    std::function<std::string()> runnerPath;
    ProcessFactory makeProcess;

    // The real system around a given main queue.
    static Platform real(std::shared_ptr<MainQueue> mainQueue, const Bundle& bundle);
};

}  // namespace bonkora::platform
