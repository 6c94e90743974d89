// The runner's command line: -e TEXT, once or more. Pure; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bonkora::runner {

// Ends in a line feed.
extern const std::string_view usage;

// The script that the texts make, one a line; nothing when `arguments` (without the program's own
// name) are anything else than such pairs, or none at all.
std::optional<std::string> scriptFromArguments(const std::vector<std::string_view>& arguments);

}  // namespace bonkora::runner
