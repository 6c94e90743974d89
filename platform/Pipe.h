// Pipe: both ends of a pipe, closed on exec, neither of them number 0, 1 or 2.
#pragma once

#include <optional>
#include <string_view>

#include "platform/UniqueDescriptor.h"

namespace bonkora::platform {

struct Pipe {
    UniqueDescriptor fileHandleForReading;
    UniqueDescriptor fileHandleForWriting;

    // Nothing, and errno set, when the system has no descriptor to give.
    static std::optional<Pipe> make();
};

// Writes all of `bytes`, waiting where the descriptor would block. False, and errno set, on any
// error. The caller sees to SIGPIPE.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace bonkora::platform
