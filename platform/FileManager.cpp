#include "platform/FileManager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/Descriptor.h"

namespace bonkora::platform {

bool fileExists(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

bool writeAtomically(const std::string& path, std::string_view text) {
    std::string sidePath = path + ".XXXXXX";
    UniqueDescriptor side(::mkostemp(sidePath.data(), O_CLOEXEC));
    if (!side) {
        return false;
    }
    if (!writeAll(side.get(), text) || ::rename(sidePath.c_str(), path.c_str()) != 0) {
        ::unlink(sidePath.c_str());
        return false;
    }
    return true;
}

bool setPermissions(const std::string& path, mode_t permissions) {
    return ::fchmodat(AT_FDCWD, path.c_str(), permissions, AT_SYMLINK_NOFOLLOW) == 0;
}

bool makeNamedPipe(const std::string& path, mode_t permissions) {
    return ::mkfifo(path.c_str(), permissions) == 0;
}

bool removeItem(const std::string& path) {
    return ::unlink(path.c_str()) == 0;
}

std::string_view parentFolder(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::string_view lastComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace bonkora::platform
