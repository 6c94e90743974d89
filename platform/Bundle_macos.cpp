#include <mach-o/dyld.h>

#include <climits>
#include <cstdint>
#include <cstdlib>

#include "platform/Bundle.h"

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

}  // namespace bonkora::platform
