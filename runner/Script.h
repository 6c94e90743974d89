// The script that the runner is given on its command line, and the one statement of AppleScript
// that is understood in it:
//
//     do shell script "TEXT" [with administrator privileges]
//
// Words are separated by spaces and tabs; empty lines may stand before and after. In TEXT a
// backslash stands before ", \, n, r or t and nowhere else; every other character, a line feed too,
// stands for itself. Pure; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Result.h"

namespace bonkora::runner {

// Ends in a line feed.
extern const std::string_view usage;

// The script whose lines follow the options: -e LINE, once or more. `arguments` does not hold the
// program's own name. Nothing when they are anything else.
std::optional<std::string> scriptFromArguments(const std::vector<std::string_view>& arguments);

struct ScriptRange {
    // In characters (Unicode code points, not bytes); the end is not included.
    std::size_t start = 0;
    std::size_t end = 0;

    friend bool operator==(const ScriptRange&, const ScriptRange&) = default;
};

// What a script asks for.
struct ShellCommand {
    std::string text;  // for /bin/sh -c; any bytes but NUL
    bool withAdministratorPrivileges = false;
    ScriptRange range;  // of the whole statement
};

struct SyntaxError {
    ScriptRange range;  // of what was not expected; empty at the end of the script
    std::string message;
};

platform::Result<ShellCommand, SyntaxError> parseScript(std::string_view script);

}  // namespace bonkora::runner
