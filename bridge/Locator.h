// Where the detector may lie. Reads the working directory and looks for the bundle's resource;
// changes nothing.
#pragma once

#include <string>
#include <vector>

#include "platform/Bundle.h"

namespace bonkora {

// A developer's checkout, fixed when the program is built.
inline constexpr const char* fixedDevelopmentPath = "/usr/local/src/Bonkora/Resources/spank";

// The places to look, best first, as they are built: not resolved, with any ".." still in them. A
// place that cannot be formed is absent. A bundle with neither an executable nor arguments is a
// fatal error.
std::vector<std::string> candidatePaths(const platform::Bundle& bundle);

}  // namespace bonkora
