// HelperReport: what is known once the program that runs the command has ended. Values; any thread.
#pragma once

#include <optional>
#include <string>

#include "runner/Failure.h"

namespace bonkora::runner {

struct HelperReport {
    bool throughPolkit = false;
    bool started = false;              // the command, not only the program
    std::optional<int> commandStatus;  // 0 to 255; 128 and the signal's number for a killed one
    int helperStatus = 0;              // likewise, of the program itself
    std::string errorOutput;           // the end of what came on standard error
};

// Nothing when the command succeeded.
std::optional<Failure> failureFrom(const HelperReport& report);

}  // namespace bonkora::runner
