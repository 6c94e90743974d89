#include "bridge/OutputLines.h"

#include <algorithm>
#include <array>

#include "platform/Text.h"

namespace bonkora {

bool plainLineCountsAsSlap(std::string_view line) {
    constexpr std::array<std::string_view, 3> words{"slap", "hit", "playing"};
    const std::string lowercased = platform::lowercasedAscii(line);
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
        return lowercased.find(word) != std::string::npos;
    });
}

}  // namespace bonkora
