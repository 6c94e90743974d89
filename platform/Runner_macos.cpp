#include "platform/Runner.h"

namespace bonkora::platform {

std::string runnerPath(const std::optional<std::string>&) {
    return "/usr/bin/osascript";
}

}  // namespace bonkora::platform
