// The children of this process, those that ended and wait to be reaped included. One thread.
#pragma once

#include <sys/types.h>

#include <vector>

namespace bonkora::runner {

// A number in it stays that child's until the caller reaps it.
std::vector<pid_t> childrenOfThisProcess();

}  // namespace bonkora::runner
