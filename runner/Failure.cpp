#include "runner/Failure.h"

#include <algorithm>
#include <system_error>

#include "platform/Text.h"

namespace bonkora::runner {
namespace {

std::string line(const ScriptRange& range, std::string_view kind, const Failure& failure) {
    return std::to_string(range.start) + ':' + std::to_string(range.end) + ": " +
           std::string(kind) + " error: " + failure.message + " (" +
           std::to_string(failure.number) + ")\n";
}

bool isControl(char c) {
    return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F;
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

bool isOutsideAscii(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

Failure systemFailure(int error) {
    return {"The command could not be started: " + std::generic_category().message(error) + '.',
            error};
}

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

std::string messageFromErrorOutput(std::string_view output) {
    while (!output.empty() && (output.back() == '\n' || output.back() == '\r')) {
        output.remove_suffix(1);
    }
    // A character has at most three bytes after its first.
    for (int i = 0; i < 3 && !output.empty() && isContinuation(output.front()); ++i) {
        output.remove_prefix(1);
    }
    std::string message(output);
    std::replace_if(message.begin(), message.end(), isControl, ' ');
    if (!platform::isValidUtf8(message)) {
        std::replace_if(message.begin(), message.end(), isOutsideAscii, '?');
    }
    return message;
}

std::string executionErrorLine(const ScriptRange& range, const Failure& failure) {
    return line(range, "execution", failure);
}

std::string syntaxErrorLine(const SyntaxError& error) {
    return line(error.range, "syntax", {error.message, scriptNotUnderstood});
}

}  // namespace bonkora::runner
