// SyntaxError: why a script cannot be understood. Values; any thread.
#pragma once

#include <string>

#include "runner/ScriptRange.h"

namespace bonkora::runner {

struct SyntaxError {
    ScriptRange range;  // of what was not expected; empty at the end of the script
    std::string message;
};

}  // namespace bonkora::runner
