// The one statement of AppleScript that is understood here:
//
//     do shell script "TEXT" [with administrator privileges]
//
// Words are separated by spaces and tabs; empty lines may stand before and after. In TEXT a
// backslash stands before ", \, n, r or t and nowhere else; every other character, a line feed too,
// stands for itself. Pure; any thread.
#pragma once

#include <string_view>
#include <variant>

#include "runner/ShellCommand.h"
#include "runner/SyntaxError.h"

namespace bonkora::runner {

std::variant<ShellCommand, SyntaxError> parseScript(std::string_view script);

}  // namespace bonkora::runner
