#include "platform/SignalDescriptor.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace bonkora::platform {

SignalDescriptor::SignalDescriptor(std::initializer_list<int> signals) {
    sigset_t set;
    ::sigemptyset(&set);
    for (const int signal : signals) {
        ::sigaddset(&set, signal);
    }
    descriptor.reset(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!descriptor) {
        throw std::system_error(errno, std::generic_category());
    }
    ::sigprocmask(SIG_BLOCK, &set, nullptr);
}

std::optional<int> SignalDescriptor::take() const {
    signalfd_siginfo info{};
    if (::read(descriptor.get(), &info, sizeof info) != static_cast<ssize_t>(sizeof info)) {
        return std::nullopt;
    }
    return static_cast<int>(info.ssi_signo);
}

}  // namespace bonkora::platform
