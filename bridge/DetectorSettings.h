// What the user chooses for the detector, and the command line that tells it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bonkora {

// The four sound modes.
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

// The initial values of all settings stand here and nowhere else.
struct DetectorSettings {
    Mode mode = Mode::pain;
    std::int64_t cooldownMs = 750;  // milliseconds
    double minAmplitude = 0.05;     // in the detector's unit
    bool volumeScaling = true;
    bool fastMode = false;
    std::string customSoundPath{};  // a folder
};

// The detector's command line, without the program's name. Every option and every value is an
// element of its own; values are passed on as they are.
std::vector<std::string> detectorArguments(const DetectorSettings& settings);

}  // namespace bonkora
