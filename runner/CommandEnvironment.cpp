#include "runner/CommandEnvironment.h"

namespace bonkora::runner {

std::vector<std::string> commandEnvironment(
    const std::function<std::optional<std::string>(const char* name)>& own) {
    std::vector<std::string> environment{"PATH=/usr/bin:/bin:/usr/sbin:/sbin"};
    for (const char* const name : {"HOME", "LOGNAME", "PKEXEC_UID", "SHELL", "USER"}) {
        if (const auto value = own(name)) {
            environment.push_back(std::string(name) + '=' + *value);
        }
    }
    return environment;
}

}  // namespace bonkora::runner
