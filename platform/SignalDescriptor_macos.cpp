#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "platform/SignalDescriptor.h"

namespace bonkora::platform {

namespace {

// A signal handler can reach nothing but globals. The pipe holds the number of each signal that has
// come once, so it is never full.
std::atomic<int> writingEnd{-1};
std::atomic<unsigned> waiting{0};  // a bit for each of these signals

unsigned bitOf(int signal) {
    return 1U << (static_cast<unsigned>(signal) % 32);
}

void note(int signal) {
    const int saved = errno;
    if ((waiting.fetch_or(bitOf(signal)) & bitOf(signal)) == 0) {
        const auto number = static_cast<unsigned char>(signal);
        [[maybe_unused]] const auto written = ::write(writingEnd, &number, 1);
    }
    errno = saved;
}

}  // namespace

SignalDescriptor::SignalDescriptor(std::initializer_list<int> signals) {
    auto pipe = Pipe::make();
    if (!pipe) {
        throw std::system_error(errno, std::generic_category());
    }
    ::fcntl(pipe->fileHandleForReading.get(), F_SETFL, O_NONBLOCK);
    descriptor = std::move(pipe->fileHandleForReading);
    const UniqueDescriptor before{writingEnd.exchange(pipe->fileHandleForWriting.release())};
    waiting = 0;
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    for (const int signal : signals) {
        ::sigaction(signal, &action, nullptr);
    }
}

std::optional<int> SignalDescriptor::take() const {
    unsigned char number = 0;
    if (::read(descriptor.get(), &number, 1) != 1) {
        return std::nullopt;
    }
    waiting &= ~bitOf(number);
    return number;
}

}  // namespace bonkora::platform
