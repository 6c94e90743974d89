#include "tests/unit/runner/ProcessWatch.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace bonkora::test {

ProcessWatch::ProcessWatch(pid_t process)
    : descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0))) {
    if (!descriptor) {
        throw std::runtime_error("no process " + std::to_string(process));
    }
}

bool ProcessWatch::endsWithin(std::chrono::milliseconds time) const {
    pollfd ended{descriptor.get(), POLLIN, 0};
    return ::poll(&ended, 1, static_cast<int>(time.count())) == 1;
}

}  // namespace bonkora::test
