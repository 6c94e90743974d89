// CommandLine: the application's own, short one. Pure functions; any thread.
#pragma once

#include <span>
#include <string>

namespace bonkora::commandLine {

struct Answer {
    int status;
    std::string output;  // for standard output
    std::string error;   // for standard error
};

// What to say and to end with at once; a status below 0 where the application is to start.
// `arguments` without the program's name.
Answer answer(std::span<const char* const> arguments);

}  // namespace bonkora::commandLine
