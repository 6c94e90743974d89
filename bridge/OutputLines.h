// The detector's output as lines. Pure; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bonkora {

// Whether a line that is no event counts as a slap: it contains "slap", "hit" or "playing" in any
// letter case, wherever they stand.
bool plainLineCountsAsSlap(std::string_view line);

}  // namespace bonkora
