// Where the privileged runner is. One implementation for each system.
#pragma once

#include <optional>
#include <string>

namespace bonkora::platform {

// The path to launch. On macOS always /usr/bin/osascript. Elsewhere that same path when a file is
// there, and otherwise Contents/Helpers/osascript of the application folder that holds
// `executablePath` (the running program's). Asked anew at every launch.
std::string runnerPath(const std::optional<std::string>& executablePath);

}  // namespace bonkora::platform
