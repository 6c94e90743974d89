// Requester: the user who asked for a program that polkit has started as root. Main thread, before
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
};

// Who asked, by PKEXEC_UID: nobody when this program does not run as root or polkit is not behind
// it; refused when the variable makes no sense.
platform::Result<std::optional<Requester>> findRequester();

// Becomes that user for good: groups, user, home folder and the runtime folder in which the user's
// sound session lies. False unless every right of root is verifiably gone; the program must then
// end.
[[nodiscard]] bool become(const Requester& requester);

}  // namespace bonkora::detector
