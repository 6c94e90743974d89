#include "platform/SpawnAttributes.h"

namespace bonkora::platform {

// Ours are closed on exec; this keeps out those of libraries that forgot to say so.
void SpawnAttributes::closeOtherDescriptors() {
    ::posix_spawn_file_actions_addclosefrom_np(&actions, 3);
}

short SpawnAttributes::systemFlags() {
    return 0;
}

}  // namespace bonkora::platform
