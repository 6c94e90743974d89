#include <fcntl.h>
#include <mach-o/dyld.h>
#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstdlib>

#include "platform/System.h"

namespace bonkora::platform {

std::optional<std::string> currentExecutablePath() {
    std::uint32_t size = 0;
    ::_NSGetExecutablePath(nullptr, &size);
    std::string path(size, '\0');
    char resolved[PATH_MAX];
    if (::_NSGetExecutablePath(path.data(), &size) != 0 ||
        ::realpath(path.c_str(), resolved) == nullptr) {
        return std::nullopt;
    }
    return resolved;
}

std::string temporaryDirectory() {
    char buffer[PATH_MAX];
    const std::size_t length = ::confstr(_CS_DARWIN_USER_TEMP_DIR, buffer, sizeof buffer);
    const char* value = length > 0 && length <= sizeof buffer ? buffer : std::getenv("TMPDIR");
    if (value == nullptr || *value == '\0') {
        value = "/tmp";
    }
    std::string path(value);
    path.erase(path.find_last_not_of('/') + 1);
    return path + '/';
}

std::string runnerPath(const std::optional<std::string>&, const std::string& systemRunner) {
    return systemRunner;
}

// There is no pipe2. The spawn flag below keeps both ends from a child that is started in between.
bool makePipe(int (&ends)[2]) {
    if (::pipe(ends) != 0) {
        return false;
    }
    ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    return true;
}

// With the flag below every descriptor is closed that no file action names.
int keepStandardDescriptorsOnly(posix_spawn_file_actions_t& actions) {
    return ::posix_spawn_file_actions_addinherit_np(&actions, 0);
}

short systemSpawnFlags() {
    return POSIX_SPAWN_CLOEXEC_DEFAULT;
}

}  // namespace bonkora::platform
