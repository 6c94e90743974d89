#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <limits>

#include "detector/Number.h"
#include "detector/program/Requester.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

std::string runtimeFolderOf(uid_t user) {
    const std::string folder = "/run/user/" + platform::decimal(user);
    struct stat status {};
    const bool isHis = ::stat(folder.c_str(), &status) == 0 && status.st_uid == user;
    return isHis ? folder : std::string{};
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
    return Requester{*user, entry->pw_gid, entry->pw_name, entry->pw_dir, runtimeFolderOf(*user)};
}

}  // namespace bonkora::detector
