#include "runner/Supervisor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

#include "platform/Pipe.h"
#include "runner/ElevatedLink.h"
#include "runner/ExecVector.h"

namespace bonkora::runner {
namespace {

using Clock = std::chrono::steady_clock;

std::optional<std::string> ownEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

// The parent of that process; nothing when it is gone.
std::optional<pid_t> parentOf(const std::filesystem::path& folder) {
    std::ifstream file(folder / "stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    // NUMBER (NAME) STATE PARENT ...; the name may hold anything, parentheses too.
    const std::size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos) {
        return std::nullopt;
    }
    std::istringstream rest(text.substr(nameEnd + 1));
    char state = 0;
    pid_t parent = 0;
    return rest >> state >> parent ? std::optional(parent) : std::nullopt;
}

// Those that have ended and wait to be reaped are included. A number in the list stays that child's
// until the caller reaps it.
std::vector<pid_t> childrenOfThisProcess() {
    std::vector<pid_t> children;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename();
        pid_t process = 0;
        if (std::from_chars(name.data(), name.data() + name.size(), process).ec == std::errc() &&
            parentOf(entry->path()) == ::getpid()) {
            children.push_back(process);
        }
    }
    return children;
}

// In the child, between fork and exec.
[[noreturn]] void becomeShell(const std::string& command, char* const environment[], int link) {
    ::setsid();  // also without a terminal
    // Should the supervisor itself be killed, nobody else would end the command.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Said here, so that the runner hears it before the command can do anything.
    ::send(link, &startedByte, 1, MSG_NOSIGNAL);
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing >= 0) {
        ::dup2(nothing, STDIN_FILENO);
    }
    ::signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execle("/bin/sh", "sh", "-c", command.c_str(), nullptr, environment);
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

Supervisor::Supervisor(int theLink) : link(theLink), signals{SIGCHLD, SIGTERM, SIGINT, SIGHUP} {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

int Supervisor::run(const std::string& shellCommand) {
    // The user may have answered the prompt long after the runner was gone.
    pollfd closed{link, POLLIN, 0};
    if (::poll(&closed, 1, 0) != 0 || !start(shellCommand)) {
        return 1;
    }
    wait();
    const bool endedByItself = commandStatus.has_value();
    endDescendants();
    if (!endedByItself) {
        return 1;
    }
    const auto status = static_cast<char>(*commandStatus);
    ::send(link, &status, 1, MSG_NOSIGNAL);
    return *commandStatus;
}

bool Supervisor::start(const std::string& shellCommand) {
    std::vector<std::string> environment = commandEnvironment(ownEnvironment);
    const std::vector<char*> pointers = execVector(environment);
    command = ::fork();
    if (command == 0) {
        becomeShell(shellCommand, pointers.data(), link);
    }
    return command > 0;
}

void Supervisor::wait() {
    for (;;) {
        std::array<pollfd, 2> watched{{{link, POLLIN, 0}, {signals.get(), POLLIN, 0}}};
        ::poll(watched.data(), watched.size(), -1);
        if (watched[0].revents != 0) {
            return;
        }
        while (const auto signal = signals.take()) {
            if (*signal != SIGCHLD) {
                return;
            }
            reap();
        }
        if (commandStatus) {
            return;
        }
    }
}

void Supervisor::endDescendants() {
    if (!signalUntil(SIGTERM, Clock::now() + politeTime)) {
        // What cannot be killed within this time belongs to somebody else, or to the kernel.
        signalUntil(SIGKILL, Clock::now() + std::chrono::seconds(1));
    }
}

bool Supervisor::signalUntil(int signal, Clock::time_point deadline) {
    while (!reap()) {
        // A child keeps its number until it is reaped, so none of this can reach a stranger. Those
        // whose parent ends become our children, and have their turn in the next round.
        if (!commandStatus) {
            ::kill(-command, signal);
        }
        for (const pid_t child : childrenOfThisProcess()) {
            ::kill(child, signal);
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) {
            return false;
        }
        pollfd changed{signals.get(), POLLIN, 0};
        ::poll(&changed, 1, static_cast<int>(left));
        while (signals.take()) {
        }
    }
    return true;
}

bool Supervisor::reap() {
    for (;;) {
        int status = 0;
        const pid_t child = ::waitpid(-1, &status, WNOHANG);
        if (child <= 0) {
            return child < 0 && errno == ECHILD;
        }
        if (child == command) {
            commandStatus = exitStatus(status);
        }
    }
}

}  // namespace bonkora::runner
