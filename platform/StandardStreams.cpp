#include "platform/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace bonkora::platform {

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
