#include "platform/Platform.h"

#include <utility>

#include "platform/System.h"

namespace bonkora::platform {

Platform Platform::real(std::shared_ptr<MainQueue> mainQueue, const Bundle& bundle) {
    return {.mainQueue = std::move(mainQueue),
            .globalQueue = GlobalQueue::real(),
            .console = Console::standardOutput(),
            .bundle = bundle,
            .temporaryDirectory = platform::temporaryDirectory,
            .runnerPath = [executable =
                               bundle.executablePath] { return platform::runnerPath(executable); },
            .makeProcess = makePosixProcess};
}

}  // namespace bonkora::platform
