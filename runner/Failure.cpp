#include "runner/Failure.h"

#include <system_error>

namespace bonkora::runner {

Failure systemFailure(int error) {
    return {"The command could not be started: " + std::generic_category().message(error) + '.',
            error};
}

}  // namespace bonkora::runner
