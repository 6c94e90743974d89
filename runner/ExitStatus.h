// How a child ended, as one number in the way of shells. Pure; any thread.
#pragma once

#include <sys/wait.h>

namespace bonkora::runner {

// From waitpid's status: the exit code, 0 to 255, or 128 and the number of the signal.
inline int exitStatus(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

}  // namespace bonkora::runner
