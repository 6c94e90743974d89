#include "detector/program/Requester.h"

#include <grp.h>
#include <unistd.h>

#include <cstdlib>

namespace bonkora::detector {

namespace {

// The systems differ in the type of a group's number here.
template <typename Group>
bool join(int (&initGroups)(const char*, Group), const Requester& requester) {
    return initGroups(requester.name.c_str(), static_cast<Group>(requester.group)) == 0;
}

// Root's rights are gone when nothing brings them back: seteuid() and setegid() succeed as long as
// the real or the saved user or group is still root's.
bool rootIsGone(const Requester& requester) {
    return ::getuid() == requester.user && ::geteuid() == requester.user &&
           ::getgid() == requester.group && ::getegid() == requester.group && ::setuid(0) != 0 &&
           ::seteuid(0) != 0 && ::setgid(0) != 0 && ::setegid(0) != 0;
}

void enterSession(const Requester& requester) {
    ::setenv("HOME", requester.home.c_str(), 1);
    ::setenv("USER", requester.name.c_str(), 1);
    ::setenv("LOGNAME", requester.name.c_str(), 1);
    if (requester.runtimeFolder.empty()) {
        ::unsetenv("XDG_RUNTIME_DIR");
    } else {
        ::setenv("XDG_RUNTIME_DIR", requester.runtimeFolder.c_str(), 1);
    }
}

}  // namespace

// The groups first, while root may still change them; the user last. Each sets the real, the
// effective and the saved one, because it is root who asks.
bool become(const Requester& requester) {
    if (!join(::initgroups, requester) || ::setgid(requester.group) != 0 ||
        ::setuid(requester.user) != 0 || !rootIsGone(requester)) {
        return false;
    }
    enterSession(requester);
    return true;
}

}  // namespace bonkora::detector
