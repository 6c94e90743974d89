#include "runner/HelperReport.h"

#include "runner/ErrorLine.h"

namespace bonkora::runner {

std::optional<Failure> failureFrom(const HelperReport& report) {
    const std::string message = messageFromErrorOutput(report.errorOutput);
    const auto orElse = [&](const char* text) { return message.empty() ? text : message; };
    if (report.commandStatus) {
        if (*report.commandStatus == 0) {
            return std::nullopt;
        }
        return Failure{orElse("The command exited with a non-zero status."), *report.commandStatus};
    }
    if (report.started) {
        return Failure{"The command was ended together with its supervisor.", report.helperStatus};
    }
    // From here on these numbers are pkexec's own: a command of that status was started.
    if (report.throughPolkit && report.helperStatus == 126) {
        return Failure{"User canceled.", userCanceled};
    }
    if (report.throughPolkit && report.helperStatus == 127) {
        return Failure{
            "Administrator rights were refused." + (message.empty() ? "" : " " + message),
            authorizationDenied};
    }
    return Failure{orElse("The command could not be started."), report.helperStatus};
}

}  // namespace bonkora::runner
