// What the runner and bonkora-elevated, which runs the command, have agreed on. Between them is a
// socket, which bonkora-elevated has as its standard input. It sends two bytes at most: startedByte
// when the command starts, and at the end the command's exit status. The runner sends nothing; when
// its end closes, for whatever reason, the command is to be ended.
#pragma once

#include <sys/wait.h>

#include <chrono>

namespace bonkora::runner {

inline constexpr char startedByte = 's';

// How long the command and all it started may take to end when asked to; then they are killed.
inline constexpr std::chrono::milliseconds politeTime{300};
// How long the runner waits for that. A restart starts the next command 500 ms after it asked the
// runner to end, and must not meet the old one.
inline constexpr std::chrono::milliseconds endingTime{400};

// How a child ended, as one number in the way of shells: from waitpid's status the exit code, 0 to
// 255, or 128 and the number of the signal.
inline int exitStatus(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

}  // namespace bonkora::runner
