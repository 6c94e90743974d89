#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "detector/program/Requester.h"

namespace bonkora::detector {

platform::Result<std::optional<Requester>> findRequester() {
    if (::geteuid() != 0) {
        return std::nullopt;
    }
    uid_t user = ::getuid();
    struct stat console {};
    if (user == 0 && ::stat("/dev/console", &console) == 0) {
        user = console.st_uid;
    }
    if (user == 0) {
        return std::nullopt;
    }
    const passwd* const entry = ::getpwuid(user);
    if (entry == nullptr) {
        return platform::Failed{"the user who asked is unknown to the system"};
    }
    return Requester{user, entry->pw_gid, entry->pw_name, entry->pw_dir, {}};
}

}  // namespace bonkora::detector
