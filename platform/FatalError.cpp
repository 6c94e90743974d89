#include "platform/FatalError.h"

#include <cstdlib>
#include <string>

#include "platform/Pipe.h"

namespace bonkora::platform {

void fatalError(std::string_view message) {
    writeAll(2, "Fatal error: " + std::string(message) + "\n");
    std::abort();
}

}  // namespace bonkora::platform
