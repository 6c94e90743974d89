// DetectorEvent: one line of detector output that is a JSON object. Values; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/JsonReader.h"

namespace bonkora {

struct DetectorEvent {
    platform::JsonObject values;

    // The kind of event; nothing when it is absent or no string.
    const std::string* type() const;
    // The strength of a slap, in the detector's unit; nothing unless it is a number (a Boolean is
    // none).
    std::optional<double> amplitude() const;
    // The detector's error text; nothing unless it is a string.
    const std::string* message() const;
};

}  // namespace bonkora
