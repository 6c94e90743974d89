// The link between the runner and the program that runs the command, bonkora-elevated: a socket,
// which that program has as its standard input. It says two bytes at most: startedByte once the
// command runs, and at the end the command's exit status (see ExitStatus.h). The runner says
// nothing; when its end closes, for whatever reason, the command is to be ended.
#pragma once

#include <chrono>

namespace bonkora::runner {

inline constexpr char startedByte = 's';

// How long the command and all it started may take to end when asked to; then they are killed.
inline constexpr std::chrono::milliseconds politeTime{300};
// How long the runner waits for that. A restart begins anew 500 ms after the runner was asked to
// end, and must not meet the old command.
inline constexpr std::chrono::milliseconds endingTime{400};

}  // namespace bonkora::runner
