// Mode: the four sound modes of the detector. Values; any thread.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace bonkora {

enum class Mode { pain, sexy, halo, custom };

// In the order in which they are shown.
inline constexpr std::array<Mode, 4> allCases{Mode::pain, Mode::sexy, Mode::halo, Mode::custom};

// The mode's name: "pain", "sexy", "halo", "custom".
constexpr std::string_view rawValue(Mode mode) {
    constexpr std::array<std::string_view, 4> names{"pain", "sexy", "halo", "custom"};
    return names.at(static_cast<std::size_t>(mode));
}

// Identifies the mode in a collection.
constexpr std::string_view id(Mode mode) {
    return rawValue(mode);
}

// The mode of exactly that name, or nothing.
constexpr std::optional<Mode> modeFromRawValue(std::string_view name) {
    for (const Mode mode : allCases) {
        if (rawValue(mode) == name) {
            return mode;
        }
    }
    return std::nullopt;
}

}  // namespace bonkora
