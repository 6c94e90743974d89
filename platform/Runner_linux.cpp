#include "platform/FileManager.h"
#include "platform/Runner.h"

namespace bonkora::platform {

std::string runnerPath(const std::optional<std::string>& executablePath) {
    constexpr const char* systemRunner = "/usr/bin/osascript";
    if (!executablePath || fileExists(systemRunner)) {
        return systemRunner;
    }
    const std::string folder = executablePath->substr(0, executablePath->rfind('/'));
    return folder.substr(0, folder.rfind('/')) + "/Helpers/osascript";
}

}  // namespace bonkora::platform
