#include <fcntl.h>
#include <unistd.h>

#include "platform/Pipe.h"

namespace bonkora::platform {

std::optional<Pipe> Pipe::make() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    return Pipe{UniqueDescriptor(ends[0]), UniqueDescriptor(ends[1])};
}

}  // namespace bonkora::platform
