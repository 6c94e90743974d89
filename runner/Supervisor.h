// Supervisor: runs one shell command for the runner at the other end of a link (Link.h) and answers
// for its end. When the command has ended, whatever it left behind is ended too; when the link
// closes or this process is asked to end, all of it is. Main thread only; once a process.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

#include "runner/SignalDescriptor.h"

namespace bonkora::runner {

class Supervisor {
  public:
    // `link` is the socket to the runner, borrowed. From here on this process adopts every
    // descendant whose own parent ends, also one that took a session of its own.
    explicit Supervisor(int link);

    // Runs `command` with /bin/sh in a session of its own, with nothing to read. Returns its
    // exit status (ExitStatus.h), which the link has been told; 1 when it was not started or did
    // not end by itself.
    int run(const std::string& command);

  private:
    bool start(const std::string& command);
    // Until the command or its time has come to an end.
    void wait();
    // Asks all descendants to end, and kills those that have not within politeTime.
    void endDescendants();
    // True when no descendant is left by that time.
    bool signalUntil(int signal, std::chrono::steady_clock::time_point deadline);
    // True when no descendant is left.
    bool reap();

    const int link;
    const SignalDescriptor signals;
    pid_t command = -1;
    std::optional<int> commandStatus;
};

}  // namespace bonkora::runner
