#include "platform/Pipe.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace bonkora::platform {

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

}  // namespace bonkora::platform
