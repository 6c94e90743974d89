#include "platform/SpawnAttributes.h"

#include <csignal>

namespace bonkora::platform {

SpawnAttributes::SpawnAttributes(int output) {
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output, 1);
    ::posix_spawn_file_actions_adddup2(&actions, output, 2);
    closeOtherDescriptors();

    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setflags(&attributes_,
                               static_cast<short>(POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                                  POSIX_SPAWN_SETSIGDEF | systemFlags()));
    ::posix_spawnattr_setpgroup(&attributes_, 0);
    sigset_t signals;
    sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
}

SpawnAttributes::~SpawnAttributes() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions);
}

}  // namespace bonkora::platform
