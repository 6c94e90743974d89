// The detector's command line. Pure; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bridge/Mode.h"

namespace bonkora {

struct DetectorSettings {
    Mode mode = Mode::pain;
    std::int64_t cooldownMs = 750;
    double minAmplitude = 0.05;
    bool volumeScaling = true;
    bool fastMode = false;
    std::string customSoundPath{};
};

// Every option and every value is an element of its own; values are passed on as they are.
std::vector<std::string> detectorArguments(const DetectorSettings& settings);

}  // namespace bonkora
