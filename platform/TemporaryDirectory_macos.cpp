#include <unistd.h>

#include <climits>
#include <cstdlib>

#include "platform/FileManager.h"

namespace bonkora::platform {

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

}  // namespace bonkora::platform
