// Bundle: where the running program and its resources lie, and how it was called. Looked up anew
// at every question; nothing is cached. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bonkora::platform {

struct Bundle {
    // The program's executable, absolute, links resolved; nothing where the system cannot tell.
    std::optional<std::string> executablePath;
    // As given to main(), the program's name first.
    std::vector<std::string> arguments;

    // The path of the resource of that exact name, or nothing. Resources lie in Contents/Resources
    // for an executable in Contents/MacOS or Contents/Helpers, else beside the executable.
    std::optional<std::string> pathForResource(std::string_view name) const;

    // The bundle of the running program.
    static Bundle main(int argumentCount, const char* const* arguments);
};

}  // namespace bonkora::platform
