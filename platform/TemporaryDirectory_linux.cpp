#include <cstdlib>

#include "platform/FileManager.h"

namespace bonkora::platform {

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

}  // namespace bonkora::platform
