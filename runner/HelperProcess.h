// Starts the program that runs the command.
#pragma once

#include <sys/types.h>

#include "runner/HelperLaunch.h"

namespace bonkora::runner {

// Its standard input and standard error are the two descriptors, its standard output is the
// caller's; it has no other descriptor, no signal blocked, every disposition the default. Returns
// an error number of POSIX; `process` is set when that is 0.
int startHelper(const HelperLaunch& launch, int input, int errors, pid_t& process);

}  // namespace bonkora::runner
