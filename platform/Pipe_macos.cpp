#include <fcntl.h>
#include <unistd.h>

#include "platform/Pipe.h"

namespace bonkora::platform {

// There is no pipe2; a child started in between is kept from both ends by its spawn attributes.
std::optional<Pipe> Pipe::make() {
    int ends[2];
    if (::pipe(ends) != 0) {
        return std::nullopt;
    }
    Pipe pipe{UniqueDescriptor(ends[0]), UniqueDescriptor(ends[1])};
    ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    return pipe;
}

}  // namespace bonkora::platform
