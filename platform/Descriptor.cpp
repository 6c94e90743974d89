#include "platform/Descriptor.h"

#include <fcntl.h>
#include <poll.h>

#include <cerrno>
#include <csignal>

#include "platform/System.h"

namespace bonkora::platform {

std::optional<Pipe> Pipe::make() {
    int ends[2];
    if (!makePipe(ends)) {
        return std::nullopt;
    }
    return Pipe{UniqueDescriptor(ends[0]), UniqueDescriptor(ends[1])};
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            // Somebody made the open file non-blocking, a terminal's other user for example.
            pollfd writable{descriptor, POLLOUT, 0};
            ::poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

void prepareStandardStreams() {
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
            // The lowest free number is this one, for those below are open by now.
            if (::open("/dev/null", O_RDWR) < 0) {
                return;
            }
        }
    }
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGCHLD, SIG_DFL);
}

}  // namespace bonkora::platform
