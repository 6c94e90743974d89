// The line on standard error by which the runner reports that it did not succeed:
// START:END: KIND error: MESSAGE (NUMBER), with a line feed. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

#include "runner/Failure.h"
#include "runner/ScriptRange.h"
#include "runner/SyntaxError.h"

namespace bonkora::runner {

std::string executionErrorLine(const ScriptRange& range, const Failure& failure);
std::string syntaxErrorLine(const SyntaxError& error);

// A command's error output as a message that keeps to its line: without the line feeds at its end,
// each other control character a space, and without a character that lost its beginning. Bytes
// that are no UTF-8 make every byte outside ASCII a question mark, since readers drop a text that
// is not well-formed.
std::string messageFromErrorOutput(std::string_view output);

}  // namespace bonkora::runner
