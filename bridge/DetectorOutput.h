// What a line of the detector's output means.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bonkora {

// A line that is a JSON object.
struct DetectorEvent {
    enum class Kind {
        slap,     // "slap" or "hit"
        ready,    // "ready"
        error,    // "error" with a text
        other,    // any other type
        nothing,  // no type that is text, or an error without one
    };

    Kind kind = Kind::nothing;
    // The strength of a slap, in the detector's unit; nothing unless the line has a number there (a
    // Boolean is none).
    std::optional<double> amplitude{};
    // The text of an error.
    std::string message{};
};

// The event that `line`, which is trimmed, tells; nothing when it is a plain line.
std::optional<DetectorEvent> readDetectorEvent(std::string_view line);

// Whether a plain line counts as a slap: it contains "slap", "hit" or "playing" in any letter case,
// wherever they stand.
bool plainLineCountsAsSlap(std::string_view line);

}  // namespace bonkora
