#include "app/desktop/SignalWatch.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <memory>

namespace bonkora {

namespace {

// The pipe to the main thread; a signal handler can reach nothing but a global.
volatile std::sig_atomic_t writingEnd = -1;

void writeByte(int) {
    const int saved = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(writingEnd, &byte, 1);
    errno = saved;
}

}  // namespace

SignalWatch::SignalWatch() : pipe(platform::Pipe::make()) {
    if (!pipe) {
        return;  // the signals then end the process at once, which does as well
    }
    writingEnd = pipe->fileHandleForWriting.get();
    notifier =
        std::make_unique<QSocketNotifier>(pipe->fileHandleForReading.get(), QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        [[maybe_unused]] const auto got = ::read(pipe->fileHandleForReading.get(), &byte, 1);
        emit terminationRequested();
    });
    std::signal(SIGTERM, writeByte);
    std::signal(SIGINT, writeByte);
}

SignalWatch::~SignalWatch() {
    std::signal(SIGTERM, SIG_IGN);
    std::signal(SIGINT, SIG_IGN);
}

}  // namespace bonkora
