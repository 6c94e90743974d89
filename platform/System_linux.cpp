#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/FileManager.h"
#include "platform/System.h"

namespace bonkora::platform {

std::optional<std::string> currentExecutablePath() {
    std::string path(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) {
            return std::nullopt;
        }
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::string temporaryDirectory() {
    for (const char* const name : {"TMPDIR", "XDG_RUNTIME_DIR"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            std::string path(value);
            path.erase(path.find_last_not_of('/') + 1);
            return path + '/';
        }
    }
    return "/tmp/";
}

std::string runnerPath(const std::optional<std::string>& executablePath,
                       const std::string& systemRunner) {
    if (!executablePath || fileExists(systemRunner)) {
        return systemRunner;
    }
    return std::string(parentFolder(parentFolder(*executablePath))) + "/Helpers/osascript";
}

bool makePipe(int (&ends)[2]) {
    return ::pipe2(ends, O_CLOEXEC) == 0;
}

int keepStandardDescriptorsOnly(posix_spawn_file_actions_t& actions) {
    return ::posix_spawn_file_actions_addclosefrom_np(&actions, 3);
}

short systemSpawnFlags() {
    return 0;
}

}  // namespace bonkora::platform
