// What a password prompt can show as it is. Whoever reads the prompt must see all that will run, so
// a text which could hide a part of itself is refused. Pure; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bonkora::runner {

// Longer runs of blanks could push what follows out of sight; a folder's name may hold a few.
inline constexpr int mostBlanksInARow = 16;

// Why a prompt cannot show `text` whole: the end of a sentence that begins with "it holds". Nothing
// when it can: when the text is valid UTF-8 without control characters, invisible characters and
// too many blanks in a row.
std::optional<std::string> whyNotShown(std::string_view text);

}  // namespace bonkora::runner
