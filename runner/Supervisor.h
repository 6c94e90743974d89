// Supervisor: runs one shell command for the runner at the other end of a link (ElevatedLink.h) and
// sees to it that nothing of it stays. When the command has ended, what it left behind is ended
// too; when the link closes, nobody reads the standard output any more, or a signal asks this
// process to end, the command is as well. Main thread only; one for each process.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "platform/SignalDescriptor.h"
#include "runner/Descendants.h"

namespace bonkora::runner {

class Supervisor {
  public:
    // `link` is the socket to the runner, borrowed. Throws std::system_error without a descriptor.
    Supervisor(int link, Descendants::Reach reach);

    // Runs `command` with /bin/sh. Returns its exit status (ElevatedLink.h); nothing when it was
    // not started or did not end by itself.
    std::optional<int> run(const std::string& command);

  private:
    // Until the command or its time has come to an end.
    void wait();

    const int link;
    const platform::SignalDescriptor signals;
    Descendants descendants;
    pid_t command = -1;
    std::optional<int> commandStatus;
};

// The same, in a PID namespace of its own wherever the system allows it, as it does for root: its
// first process is the supervisor, and dies with this one. So the kernel itself ends every
// descendant, also when this process is killed, whatever they ignore and whoever they have become.
// Anywhere else this process is the supervisor.
std::optional<int> superviseInNamespace(int link, const std::string& command);

}  // namespace bonkora::runner
