#include "platform/SpawnAttributes.h"

namespace bonkora::platform {

// With the flag below every descriptor is closed that no file action names.
void SpawnAttributes::closeOtherDescriptors() {
    ::posix_spawn_file_actions_addinherit_np(&actions, 0);
}

short SpawnAttributes::systemFlags() {
    return POSIX_SPAWN_CLOEXEC_DEFAULT;
}

}  // namespace bonkora::platform
