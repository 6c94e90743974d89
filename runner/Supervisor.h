// Supervisor: runs one shell command for the runner at the other end of a link (ElevatedLink.h) and
// sees to it that nothing of it stays. When the command has ended, what it left behind is ended
// too; when the link closes or this process is asked to end, the command is as well. Main thread
// only; one for each process.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "runner/SignalDescriptor.h"

namespace bonkora::runner {

// The command's environment, NAME=VALUE each: the system's own folders as PATH; who the command
// runs as; and in PKEXEC_UID, when polkit was asked, the number of the user who did. `own` looks a
// name up in the environment of this process.
std::vector<std::string> commandEnvironment(
    const std::function<std::optional<std::string>(const char* name)>& own);

class Supervisor {
  public:
    // `link` is the socket to the runner, borrowed. From here on this process adopts every
    // descendant whose own parent ends, also one that took a session of its own.
    explicit Supervisor(int link);

    // Runs `command` with /bin/sh in a session of its own, with nothing to read. Returns its
    // exit status (ElevatedLink.h), which the link has been told; 1 when it was not started or did
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
