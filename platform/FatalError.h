// Ends the program at once, with a line on standard error: for states that are impossible by order.
#pragma once

#include <string_view>

namespace bonkora::platform {

[[noreturn]] void fatalError(std::string_view message);

}  // namespace bonkora::platform
