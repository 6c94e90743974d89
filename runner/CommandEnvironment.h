// The command's environment: small and always the same. Pure; any thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bonkora::runner {

// NAME=VALUE each: the system's own folders as PATH; who the command runs as; and in PKEXEC_UID,
// when polkit was asked, the number of the user who did. `own` looks a name up in the environment
// of this process.
std::vector<std::string> commandEnvironment(
    const std::function<std::optional<std::string>(const char* name)>& own);

}  // namespace bonkora::runner
