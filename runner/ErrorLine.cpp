#include "runner/ErrorLine.h"

#include <algorithm>

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

std::string executionErrorLine(const ScriptRange& range, const Failure& failure) {
    return line(range, "execution", failure);
}

std::string syntaxErrorLine(const SyntaxError& error) {
    return line(error.range, "syntax", {error.message, scriptNotUnderstood});
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

}  // namespace bonkora::runner
