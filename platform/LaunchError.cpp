#include "platform/LaunchError.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

namespace bonkora::platform {
namespace {

constexpr const char* cocoa = "NSCocoaErrorDomain";
constexpr const char* posix = "NSPOSIXErrorDomain";
constexpr int noSuchFile = 4;  // NSFileNoSuchFileError

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

LaunchError LaunchError::fromErrno(const std::string& path, int number) {
    const bool missing = number == ENOENT || number == ENOTDIR || number == ELOOP ||
                         (number == EACCES && !isFolder(path));
    return missing ? LaunchError{cocoa, noSuchFile, path} : LaunchError{posix, number, path};
}

std::string LaunchError::localizedDescription() const {
    if (domain == cocoa) {
        return "The file “" + path.substr(path.rfind('/') + 1) + "” doesn’t exist.";
    }
    return "The operation couldn’t be completed. " + std::generic_category().message(code);
}

std::string LaunchError::description() const {
    return "Error Domain=" + domain + " Code=" + std::to_string(code) + " \"" +
           localizedDescription() + "\" UserInfo={NSFilePath=" + path + "}";
}

}  // namespace bonkora::platform
