// The arguments that the application itself is started with. Pure functions; any thread.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace bonkora::programArguments {

struct Answer {
    int status;
    std::string output;  // for standard output
    std::string error;   // for standard error
};

// What to print before ending at once; nothing where the application is to start. `arguments`
// without the program's name.
std::optional<Answer> answer(std::span<const char* const> arguments);

}  // namespace bonkora::programArguments
