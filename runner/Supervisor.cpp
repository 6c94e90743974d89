#include "runner/Supervisor.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <exception>

#include "platform/Descriptor.h"
#include "runner/CommandProcess.h"
#include "runner/ElevatedLink.h"

namespace bonkora::runner {
namespace {

using Clock = std::chrono::steady_clock;
using platform::Pipe;
using platform::SignalDescriptor;
using platform::UniqueDescriptor;

// What ends the run from outside: a closed link, an output without a reader (which poll reports
// unasked), and every signal but SIGCHLD.
std::array<pollfd, 3> watchedFor(int link, const SignalDescriptor& signals) {
    return {{{link, POLLIN, 0}, {STDOUT_FILENO, 0, 0}, {signals.get(), POLLIN, 0}}};
}

SignalDescriptor endSignalsAndChildren() {
    return SignalDescriptor{SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGQUIT};
}

// The first process of the namespace. Its maker learns the command's status over `report`.
[[noreturn]] void beFirstProcess(const UniqueDescriptor& maker, int report, int link,
                                 const std::string& command) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The maker may have ended before that call. getppid() tells nothing here: parents outside the
    // namespace have the number 0.
    pollfd makersEnd{maker.get(), POLLIN, 0};
    if (::poll(&makersEnd, 1, 0) != 0) {
        ::_exit(1);
    }
    try {
        if (const auto status = Supervisor(link, Descendants::Reach::wholeNamespace).run(command)) {
            platform::writeAll(report, std::string(1, static_cast<char>(*status)));
        }
    } catch (const std::exception&) {
        // Without a status the maker says that the command was not started.
    }
    ::_exit(0);
}

// Waits until the first process has ended. It does its work alone; this is for when it cannot,
// because somebody stopped it for example.
void watchFirstProcess(pid_t first, int link, const SignalDescriptor& signals) {
    constexpr auto reserve = std::chrono::milliseconds(50);
    std::optional<Clock::time_point> deadline;
    while (::waitpid(first, nullptr, WNOHANG) == 0) {
        const auto askedToEnd = [&] {
            ::kill(first, SIGTERM);
            deadline = Clock::now() + politeTime + reserve;
        };
        auto watched = watchedFor(link, signals);
        int time = -1;
        if (deadline) {
            // Nothing but its end is of interest from here on.
            watched[0].fd = watched[1].fd = -1;
            time = static_cast<int>(std::max<long long>(
                0, std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count()));
        }
        if (::poll(watched.data(), watched.size(), time) == 0) {
            ::kill(first, SIGKILL);
            deadline = Clock::now() + std::chrono::hours(1);
        }
        if (watched[0].revents != 0 || watched[1].revents != 0) {
            askedToEnd();
        }
        while (const auto signal = signals.take()) {
            if (*signal != SIGCHLD && !deadline) {
                askedToEnd();
            }
        }
    }
}

}  // namespace

Supervisor::Supervisor(int theLink, Descendants::Reach reach)
    : link(theLink),
      signals(endSignalsAndChildren()),
      descendants(reach, [this](pid_t child, int status) {
          if (child == command) {
              commandStatus = exitStatus(status);
          }
      }) {}

std::optional<int> Supervisor::run(const std::string& shellCommand) {
    // The user may have answered the prompt long after the runner was gone.
    pollfd closed{link, POLLIN, 0};
    if (::poll(&closed, 1, 0) != 0) {
        return std::nullopt;
    }
    command = startCommand(shellCommand, link);
    if (command < 0) {
        return std::nullopt;
    }
    wait();
    const auto ownStatus = commandStatus;  // none when the command was ended from outside
    descendants.end();
    return ownStatus;
}

void Supervisor::wait() {
    while (!commandStatus) {
        auto watched = watchedFor(link, signals);
        ::poll(watched.data(), watched.size(), -1);
        if (watched[0].revents != 0 || watched[1].revents != 0) {
            return;
        }
        while (const auto signal = signals.take()) {
            if (*signal != SIGCHLD) {
                return;
            }
        }
        descendants.reap();
    }
}

std::optional<int> superviseInNamespace(int link, const std::string& command) {
    const UniqueDescriptor self(static_cast<int>(::syscall(SYS_pidfd_open, ::getpid(), 0)));
    const UniqueDescriptor ownNamespace(::open("/proc/self/ns/pid", O_RDONLY | O_CLOEXEC));
    auto report = Pipe::make();
    if (!self || !ownNamespace || !report || ::unshare(CLONE_NEWPID) != 0) {
        return Supervisor(link, Descendants::Reach::tree).run(command);
    }
    const SignalDescriptor signals = endSignalsAndChildren();
    const pid_t first = ::fork();
    if (first == 0) {
        beFirstProcess(self, report->fileHandleForWriting.get(), link, command);
    }
    // This process has no more children, but a tool that looks it over at its end may need one.
    ::setns(ownNamespace.get(), CLONE_NEWPID);
    if (first < 0) {
        return std::nullopt;
    }
    report->fileHandleForWriting.reset();
    watchFirstProcess(first, link, signals);
    unsigned char status = 0;
    return ::read(report->fileHandleForReading.get(), &status, 1) == 1 ? std::optional<int>(status)
                                                                       : std::nullopt;
}

}  // namespace bonkora::runner
