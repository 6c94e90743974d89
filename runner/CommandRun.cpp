#include "runner/CommandRun.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

#include "platform/Descriptor.h"
#include "runner/ElevatedLink.h"

namespace bonkora::runner {

void OutputTail::append(std::string_view bytes) {
    tail += bytes.substr(bytes.size() - std::min(bytes.size(), limit));
    tail.erase(0, tail.size() - std::min(tail.size(), limit));
}

std::optional<Failure> CommandRun::run(const HelperLaunch& launch) {
    if (auto failure = start(launch)) {
        return failure;
    }
    if (!waitForReport()) {
        endCommand();
        return std::nullopt;
    }
    int status = 0;
    while (::waitpid(helper, &status, 0) < 0 && errno == EINTR) {
    }
    report.helperStatus = exitStatus(status);
    descendants.end();
    while (readErrors()) {
    }
    report.errorOutput = errorTail.text();
    return failureFrom(report);
}

std::optional<Failure> CommandRun::start(const HelperLaunch& launch) {
    auto pipe = platform::Pipe::make();
    int ends[2];
    if (!pipe || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return systemFailure(errno);
    }
    link.reset(ends[0]);
    const platform::UniqueDescriptor othersEnd(ends[1]);
    errors = std::move(pipe->fileHandleForReading);
    ::fcntl(errors.get(), F_SETFL, O_NONBLOCK);
    const auto started = startHelper(launch, othersEnd.get(), pipe->fileHandleForWriting.get());
    if (!started && started.error() == ENOENT && launch.throughPolkit) {
        return Failure{"pkexec is missing, which asks for administrator rights.", fileNotFound};
    }
    if (!started) {
        return systemFailure(started.error());
    }
    helper = *started;
    report.throughPolkit = launch.throughPolkit;
    return std::nullopt;
}

bool CommandRun::waitForReport() {
    for (;;) {
        std::array<pollfd, 4> watched{{{endSignals.get(), POLLIN, 0},
                                       // No event is asked for: poll reports an output without a
                                       // reader in any case.
                                       {STDOUT_FILENO, 0, 0},
                                       {errors.get(), POLLIN, 0},
                                       {link.get(), POLLIN, 0}}};
        ::poll(watched.data(), watched.size(), -1);
        if (watched[0].revents != 0 || watched[1].revents != 0) {
            return false;
        }
        if (watched[2].revents != 0 && !readErrors()) {
            errors.reset();
        }
        if (watched[3].revents != 0 && (!readLink() || report.commandStatus)) {
            return true;
        }
    }
}

void CommandRun::endCommand() {
    ::shutdown(link.get(), SHUT_WR);
    if (!report.started) {
        // Takes the password prompt away. A helper that already runs as root cannot be signalled,
        // but it looks at the link before it starts anything.
        ::kill(helper, SIGTERM);
    }
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + endingTime;
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd closed{link.get(), POLLIN, 0};
        if (left <= 0 || (::poll(&closed, 1, static_cast<int>(left)) > 0 && !readLink())) {
            return;
        }
    }
}

bool CommandRun::readLink() {
    std::array<char, 2> bytes{};
    const ssize_t count = ::read(link.get(), bytes.data(), bytes.size());
    for (ssize_t i = 0; i < count; ++i) {
        const char byte = bytes[static_cast<std::size_t>(i)];
        if (report.started) {
            report.commandStatus = static_cast<unsigned char>(byte);
        }
        report.started = true;
    }
    return count > 0 || (count < 0 && errno == EINTR);
}

bool CommandRun::readErrors() {
    std::array<char, 65536> buffer;
    const ssize_t count = ::read(errors.get(), buffer.data(), buffer.size());
    if (count > 0) {
        errorTail.append({buffer.data(), static_cast<std::size_t>(count)});
    }
    return count > 0;
}

}  // namespace bonkora::runner
