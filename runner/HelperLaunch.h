// HelperLaunch: how bonkora-elevated, the program that runs the command, is started.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/Result.h"
#include "runner/Script.h"

namespace bonkora::runner {

struct HelperLaunch {
    // The program's name or path first. A name is looked up in PATH.
    std::vector<std::string> arguments;
    // Whether polkit asks the user first. pkexec gets an empty environment: it clears it anyway,
    // and refuses to work when it finds something odd there.
    bool throughPolkit = false;
};

// `helperPath` is the real path of bonkora-elevated, because the policy names the program by it.
// `folder` is where the command is to run. The prompt shows these words, hence the command first.
// Root asks nobody. Pure; any thread.
HelperLaunch helperLaunch(const std::string& helperPath, const std::string& folder,
                          const ShellCommand& command, bool isRoot);

// Its standard input and standard error are the two descriptors, its standard output is the
// caller's; it has no other descriptor, no signal blocked, and every disposition is the default.
// Returns its process, or an error number of POSIX.
platform::Result<pid_t, int> startHelper(const HelperLaunch& launch, int input, int errors);

}  // namespace bonkora::runner
