#include "runner/Descendants.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "platform/Descriptor.h"
#include "runner/ElevatedLink.h"

namespace bonkora::runner {
namespace {

using Clock = std::chrono::steady_clock;
using platform::UniqueDescriptor;

// A process that was made while the tree was looked through tells nobody: so look again this soon.
constexpr std::chrono::milliseconds roundTime{30};
// What is there for so long after a kill belongs to another user, or hangs in the kernel.
constexpr std::chrono::seconds hopelessTime{1};

sigset_t childSignal() {
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, SIGCHLD);
    return set;
}

}  // namespace

Descendants::Descendants(Reach theReach, Reaped theReaped)
    : reach(theReach), reaped(std::move(theReaped)) {
    const sigset_t set = childSignal();
    ::sigprocmask(SIG_BLOCK, &set, nullptr);
    if (reach == Reach::tree) {
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    }
}

bool Descendants::reap() noexcept {
    for (;;) {
        int status = 0;
        const pid_t child = ::waitpid(-1, &status, WNOHANG);
        if (child > 0) {
            reaped(child, status);
        } else if (child == 0 || errno != EINTR) {
            return child < 0 && errno == ECHILD;
        }
    }
}

void Descendants::end() noexcept {
    const auto deadline = Clock::now() + politeTime;
    if (reach == Reach::wholeNamespace) {
        // No process can be made in between that would not get the signal.
        ::kill(-1, SIGTERM);
        waitUntil(deadline, [](auto&) {});
    } else if (!waitUntil(deadline, [this](auto&) { askAll(); })) {
        waitUntil(Clock::now() + hopelessTime, [this](Clock::time_point& hopeless) {
            if (killAll()) {
                hopeless = Clock::now() + hopelessTime;
            }
        });
    }
}

bool Descendants::waitUntil(Clock::time_point deadline,
                            const std::function<void(Clock::time_point&)>& eachRound) noexcept {
    auto nextRound = Clock::now();
    while (!reap()) {
        // Not at every child's end: a hundred of them would have the machine looked through as
        // often.
        if (Clock::now() >= nextRound) {
            try {
                eachRound(deadline);
            } catch (const std::bad_alloc&) {
                // Some of them have ended nonetheless, so that there may be room in the next round.
            }
            nextRound = Clock::now() + roundTime;
        }
        const auto now = Clock::now();
        if (now >= deadline) {
            return false;
        }
        const auto time = std::max(std::min(deadline, nextRound) - now, Clock::duration::zero());
        const timespec pause{0, std::chrono::nanoseconds(time).count()};
        const sigset_t set = childSignal();
        ::sigtimedwait(&set, nullptr, &pause);
    }
    return true;
}

void Descendants::askAll() {
    for (const Identity& process : tree()) {
        if (std::find(asked.begin(), asked.end(), process) == asked.end()) {
            asked.push_back(process);
            send(process, SIGTERM);
        }
    }
}

bool Descendants::killAll() {
    bool anyNew = false;
    std::vector<Identity> all = tree();
    for (const Identity& process : all) {
        send(process, SIGKILL);
        anyNew = anyNew || std::find(killed.begin(), killed.end(), process) == killed.end();
    }
    killed = std::move(all);
    return anyNew;
}

// By a handle, which stays the handle of that process when its number is given to another.
void Descendants::send(const Identity& process, int signal) {
    const UniqueDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process.number, 0)));
    Entry now;
    if (handle && readEntry(process.number, now) && now.identity == process) {
        ::syscall(SYS_pidfd_send_signal, handle.get(), signal, nullptr, 0);
    }
}

std::vector<Descendants::Identity> Descendants::tree() {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc"), ::closedir);
    std::vector<Entry> all;
    while (const dirent* const file = folder ? ::readdir(folder.get()) : nullptr) {
        const auto number = static_cast<pid_t>(std::strtol(file->d_name, nullptr, 10));
        Entry entry;
        if (number > 0 && readEntry(number, entry)) {
            all.push_back(entry);
        }
    }
    const auto byParent = [](const Entry& one, const Entry& other) {
        return one.parent < other.parent;
    };
    std::sort(all.begin(), all.end(), byParent);
    std::vector<Identity> found{{::getpid(), 0}};
    for (std::size_t next = 0; next < found.size(); ++next) {
        const auto [begin, end] =
            std::equal_range(all.begin(), all.end(), Entry{{}, found[next].number}, byParent);
        for (auto child = begin; child != end; ++child) {
            // A number given anew while the list was made could otherwise lead round in a circle.
            if (std::find(found.begin(), found.end(), child->identity) == found.end()) {
                found.push_back(child->identity);
            }
        }
    }
    found.erase(found.begin());
    return found;
}

bool Descendants::readEntry(pid_t number, Entry& entry) {
    std::array<char, 32> path{};
    std::snprintf(path.data(), path.size(), "/proc/%d/stat", number);
    const UniqueDescriptor file(::open(path.data(), O_RDONLY | O_CLOEXEC));
    std::array<char, 1024> text{};
    // Reading fails with ESRCH when the process ends between the two calls.
    if (!file || ::read(file.get(), text.data(), text.size() - 1) <= 0) {
        return false;
    }
    // NUMBER (NAME) STATE PARENT ...; the name may hold anything, parentheses too. The start time
    // is the 22nd field.
    const char* field = std::strrchr(text.data(), ')');
    for (int i = 2; i < 22 && field != nullptr; ++i) {
        field = std::strchr(field + 1, ' ');
        if (field != nullptr && i == 3) {
            entry.parent = static_cast<pid_t>(std::strtol(field, nullptr, 10));
        }
    }
    if (field == nullptr) {
        return false;
    }
    entry.identity = {number, std::strtoull(field, nullptr, 10)};
    return true;
}

}  // namespace bonkora::runner
