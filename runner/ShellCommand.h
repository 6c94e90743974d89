// ShellCommand: what a script asks for. Values; any thread.
#pragma once

#include <string>

#include "runner/ScriptRange.h"

namespace bonkora::runner {

struct ShellCommand {
    std::string text;  // for /bin/sh -c; any bytes but NUL
    bool withAdministratorPrivileges = false;
    ScriptRange range;  // of the whole statement
};

}  // namespace bonkora::runner
