// Failure: why a command did not succeed, in the platform's words and numbers; how it follows from
// what is known at the end of a run; and the line on standard error that reports it:
// START:END: KIND error: MESSAGE (NUMBER), with a line feed. Pure; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runner/Script.h"

namespace bonkora::runner {

// The platform's error numbers.
inline constexpr int fileNotFound = -43;
inline constexpr int userCanceled = -128;
inline constexpr int scriptNotUnderstood = -2741;
inline constexpr int authorizationDenied = -60005;

struct Failure {
    std::string message;  // one line of valid UTF-8
    int number = 0;       // one of those above, the command's exit status, or errno

    friend bool operator==(const Failure&, const Failure&) = default;
};

// The system could not start the command; `error` is errno's.
Failure systemFailure(int error);

// What is known once bonkora-elevated, which runs the command, has ended.
struct HelperReport {
    bool throughPolkit = false;
    bool started = false;              // the command, not only the program
    std::optional<int> commandStatus;  // as exitStatus() gives it (ElevatedLink.h)
    int helperStatus = 0;              // likewise, of the program itself
    std::string errorOutput;           // the end of what came on standard error
};

// Nothing when the command succeeded.
std::optional<Failure> failureFrom(const HelperReport& report);

// A command's error output as a message that keeps to its line: the line feeds at its end are
// dropped, and so is the rest of a character whose beginning was cut off; every other control
// character becomes a space. Where the output is not valid UTF-8, each byte outside ASCII becomes a
// question mark, since readers drop a text that is not well-formed.
std::string messageFromErrorOutput(std::string_view output);

std::string executionErrorLine(const ScriptRange& range, const Failure& failure);
std::string syntaxErrorLine(const SyntaxError& error);

}  // namespace bonkora::runner
