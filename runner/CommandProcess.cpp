#include "runner/CommandProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>

#include "platform/Descriptor.h"
#include "platform/Process.h"
#include "runner/ElevatedLink.h"

namespace bonkora::runner {
namespace {

struct UsualLimit {
    __rlimit_resource resource;
    rlim_t soft;
    rlim_t hard;
};

constexpr rlim_t unlimited = RLIM_INFINITY;
constexpr rlim_t mebibyte = 1U << 20U;

// What the kernel gives the first process, and for open files what service managers make of it. How
// many processes and pending signals a user may have depends on the machine's memory: left alone.
constexpr std::array<UsualLimit, 14> usualLimits{{
    {RLIMIT_CPU, unlimited, unlimited},
    {RLIMIT_FSIZE, unlimited, unlimited},
    {RLIMIT_DATA, unlimited, unlimited},
    {RLIMIT_STACK, 8 * mebibyte, unlimited},
    {RLIMIT_CORE, 0, unlimited},
    {RLIMIT_RSS, unlimited, unlimited},
    {RLIMIT_AS, unlimited, unlimited},
    {RLIMIT_LOCKS, unlimited, unlimited},
    {RLIMIT_RTTIME, unlimited, unlimited},
    {RLIMIT_NOFILE, 1024, 524288},
    {RLIMIT_MEMLOCK, 8 * mebibyte, 8 * mebibyte},
    {RLIMIT_MSGQUEUE, 819200, 819200},
    {RLIMIT_NICE, 0, 0},
    {RLIMIT_RTPRIO, 0, 0},
}};

void setUsualLimits() {
    for (const UsualLimit& usual : usualLimits) {
        const rlimit wanted{usual.soft, usual.hard};
        rlimit present{};
        if (::setrlimit(usual.resource, &wanted) != 0 &&
            ::getrlimit(usual.resource, &present) == 0) {
            // Only root may raise the upper limit.
            const rlim_t hard = std::min(usual.hard, present.rlim_max);
            const rlimit possible{std::min(usual.soft, hard), hard};
            ::setrlimit(usual.resource, &possible);
        }
    }
}

// What may not be changed without being root stays as it is.
void setUsualAttributes() {
    ::umask(S_IWGRP | S_IWOTH);
    ::setpriority(PRIO_PROCESS, 0, 0);
    const platform::UniqueDescriptor score(
        ::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
    if (score) {
        platform::writeAll(score.get(), "0");
    }
    setUsualLimits();
    for (int signal = 1; signal < NSIG; ++signal) {
        ::signal(signal, SIG_DFL);
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// In the child, between fork and exec.
[[noreturn]] void becomeShell(const std::string& command, char* const environment[], int link,
                              pid_t parent) {
    ::setsid();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {
        ::_exit(1);  // the parent ended before the kernel was told what to do then
    }
    // Said here, so that the runner hears it before the command can do anything.
    ::send(link, &startedByte, 1, MSG_NOSIGNAL);
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing >= 0) {
        ::dup2(nothing, STDIN_FILENO);
    }
    setUsualAttributes();
    // Without the dashes a command that begins with one would be taken for an option.
    ::execle("/bin/sh", "sh", "-c", "--", command.c_str(), nullptr, environment);
    platform::writeAll(STDERR_FILENO, "/bin/sh cannot be run.\n");
    ::_exit(127);
}

}  // namespace

std::vector<std::string> commandEnvironment(
    const std::function<std::optional<std::string>(const char* name)>& own) {
    std::vector<std::string> environment{"PATH=/usr/bin:/bin:/usr/sbin:/sbin"};
    for (const char* const name : {"HOME", "LOGNAME", "PKEXEC_UID", "SHELL", "USER"}) {
        if (const auto value = own(name)) {
            environment.push_back(std::string(name) + '=' + *value);
        }
    }
    return environment;
}

pid_t startCommand(const std::string& command, int link) {
    std::vector<std::string> environment = commandEnvironment([](const char* name) {
        const char* const value = std::getenv(name);
        return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    });
    const std::vector<char*> pointers = platform::execVector(environment);
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child == 0) {
        becomeShell(command, pointers.data(), link, parent);
    }
    return child;
}

}  // namespace bonkora::runner
