// HelperLaunch: how the program that runs the command is started. Pure; any thread.
#pragma once

#include <string>
#include <vector>

#include "runner/ShellCommand.h"

namespace bonkora::runner {

struct HelperLaunch {
    // The program's name or path first. A name is looked up in PATH.
    std::vector<std::string> arguments;
    // Whether polkit asks the user first. It wants an empty environment: it clears it anyway, and
    // refuses when it finds something odd in it.
    bool throughPolkit = false;
};

// `helperPath` is the real path of bonkora-elevated: the policy goes by it. `directory` is where
// the command is to run. Root needs nobody's leave.
HelperLaunch helperLaunch(const std::string& helperPath, const std::string& directory,
                          const ShellCommand& command, bool isRoot);

}  // namespace bonkora::runner
