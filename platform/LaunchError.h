// LaunchError: why a process could not be started, in the words and numbers the platform uses.
#pragma once

#include <string>

namespace bonkora::platform {

struct LaunchError {
    std::string path;     // the executable that was asked for
    int errorNumber = 0;  // of POSIX, as in <cerrno>

    // For people, for example: The file “osascript” doesn’t exist.
    std::string localizedDescription() const;
    // For developers: domain, number, text and path on one line.
    std::string description() const;
};

}  // namespace bonkora::platform
