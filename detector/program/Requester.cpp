#include "detector/program/Requester.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <limits>

#include "detector/Number.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

// Root's rights are gone when the real, effective and saved user and group are the new ones and
// setting them back fails.
bool rootIsGone(const Requester& requester) {
    uid_t realUser = 0;
    uid_t effectiveUser = 0;
    uid_t savedUser = 0;
    gid_t realGroup = 0;
    gid_t effectiveGroup = 0;
    gid_t savedGroup = 0;
    if (::getresuid(&realUser, &effectiveUser, &savedUser) != 0 ||
        ::getresgid(&realGroup, &effectiveGroup, &savedGroup) != 0) {
        return false;
    }
    return realUser == requester.user && effectiveUser == requester.user &&
           savedUser == requester.user && realGroup == requester.group &&
           effectiveGroup == requester.group && savedGroup == requester.group && ::setuid(0) != 0 &&
           ::setgid(0) != 0;
}

void enterSession(const Requester& requester) {
    ::setenv("HOME", requester.home.c_str(), 1);
    ::setenv("USER", requester.name.c_str(), 1);
    ::setenv("LOGNAME", requester.name.c_str(), 1);
    const std::string folder = "/run/user/" + platform::decimal(requester.user);
    struct stat status {};
    if (::stat(folder.c_str(), &status) == 0 && status.st_uid == requester.user) {
        ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    } else {
        ::unsetenv("XDG_RUNTIME_DIR");
    }
}

}  // namespace

platform::Result<std::optional<Requester>> findRequester() {
    const char* const text = std::getenv("PKEXEC_UID");
    if (::geteuid() != 0 || text == nullptr) {
        return std::nullopt;
    }
    // The highest number stands for "no user" with the system.
    const auto user = parseNumber<uid_t>(text);
    if (!user || *user == std::numeric_limits<uid_t>::max()) {
        return platform::Failed{"PKEXEC_UID is no user's number"};
    }
    if (*user == 0) {
        return std::nullopt;
    }
    const passwd* const entry = ::getpwuid(*user);
    if (entry == nullptr) {
        return platform::Failed{"PKEXEC_UID names an unknown user"};
    }
    return Requester{*user, entry->pw_gid, entry->pw_name, entry->pw_dir};
}

bool become(const Requester& requester) {
    if (::initgroups(requester.name.c_str(), requester.group) != 0 ||
        ::setresgid(requester.group, requester.group, requester.group) != 0 ||
        ::setresuid(requester.user, requester.user, requester.user) != 0 ||
        !rootIsGone(requester)) {
        return false;
    }
    enterSession(requester);
    return true;
}

}  // namespace bonkora::detector
