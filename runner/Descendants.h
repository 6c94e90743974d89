// Descendants: all processes that descend from this one, whatever session, group or user they have
// taken. Those whose parents end are adopted here, so that none gets away. Nothing here throws,
// since ending them must not fail for want of memory or because a process ends while it is looked
// at. Single-threaded; one for each process.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <vector>

namespace bonkora::runner {

class Descendants {
  public:
    // How they are reached. The first process of a PID namespace reaches all others of it by one
    // call of the kernel, and when it ends, the kernel ends them. Any other process adopts orphans,
    // and looks through /proc for its tree.
    enum class Reach { wholeNamespace, tree };

    using Reaped = std::function<void(pid_t child, int waitStatus)>;

    // Blocks SIGCHLD in this thread. `reaped` is told of every child that has ended.
    Descendants(Reach reach, Reaped reaped);

    // Collects children that have ended. True when no descendant is left.
    bool reap() noexcept;

    // Asks all to end, and kills after politeTime (ElevatedLink.h) those that have not. In a tree
    // it kills for as long as new ones appear, and gives up a second after the last: what is left
    // then belongs to another user, or hangs in the kernel. In a namespace, what is left is ended
    // by the end of this process.
    void end() noexcept;

  private:
    // Which process a number stood for when it was looked up.
    struct Identity {
        pid_t number = 0;
        unsigned long long startTime = 0;  // since the system's start, in the kernel's ticks

        friend bool operator==(const Identity&, const Identity&) = default;
    };
    struct Entry {
        Identity identity;
        pid_t parent = 0;
    };

    // Nothing when the process has gone.
    static bool readEntry(pid_t number, Entry& entry);
    static std::vector<Identity> tree();
    static void send(const Identity& process, int signal);

    void askAll();
    // True when there were some that the last round had not seen.
    bool killAll();
    // True when no descendant was left before the deadline, which each round may move.
    bool waitUntil(
        std::chrono::steady_clock::time_point deadline,
        const std::function<void(std::chrono::steady_clock::time_point&)>& eachRound) noexcept;

    const Reach reach;
    const Reaped reaped;
    std::vector<Identity> asked;
    std::vector<Identity> killed;  // in the last round
};

}  // namespace bonkora::runner
