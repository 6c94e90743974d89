// Requester: the user who asked for a program that was started as root for him. Main thread, before
// any other thread exists.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "platform/Result.h"

namespace bonkora::detector {

struct Requester {
    uid_t user = 0;
    gid_t group = 0;
    std::string name;
    std::string home;
    std::string runtimeFolder;  // in which the user's sound session lies; empty: there is none
};

// Nobody when this program does not run as root, or for root himself. On Linux polkit tells who
// asked, in PKEXEC_UID; refused when the variable makes no sense. On macOS it is the real user
// where that is not root, and otherwise the one who sits at the screen, where the password was
// typed.
platform::Result<std::optional<Requester>> findRequester();

// Becomes that user for good: groups, user, home folder and runtime folder. False unless every
// right of root is verifiably gone; the program must then end.
[[nodiscard]] bool become(const Requester& requester);

}  // namespace bonkora::detector
