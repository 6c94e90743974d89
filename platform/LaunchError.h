// LaunchError: why a process could not be started, in the words and numbers the platform uses.
// A value; any thread.
#pragma once

#include <string>

namespace bonkora::platform {

struct LaunchError {
    std::string domain;  // NSCocoaErrorDomain or NSPOSIXErrorDomain
    int code = 0;        // a number of that domain
    std::string path;    // the executable that was asked for

    // From a number of <cerrno>. An executable that is missing and one without execute permission
    // are both reported as missing, a folder as a lack of permission, as the Mac's facility does.
    static LaunchError fromErrno(const std::string& path, int number);

    // For people, for example: The file “osascript” doesn’t exist.
    std::string localizedDescription() const;
    // For developers: domain, number, text and path on one line.
    std::string description() const;
};

}  // namespace bonkora::platform
