#include "detector/detection/Tuning.h"

#include <algorithm>
#include <cmath>

namespace bonkora::detector {

Tuning tuningFor(SensorKind kind, double rate) {
    if (kind == SensorKind::microphone) {
        return {.highPass = 60.0,
                .lowPass = 350.0,
                .window = 0.012,
                .forceTime = 0.0,
                .riseTime = 0.003,
                .lookBack = 0.012,
                .riseFactor = 1.25,
                .ambientTime = 0.4,
                .ambientFactor = 0.0,
                .holdTime = 0.08};
    }
    // Slow sensors see a knock in two or three readings.
    const double reading = 1.0 / rate;
    return {.highPass = 15.0,
            .lowPass = rate,
            .window = std::max(0.008, reading),
            .forceTime = 0.015,
            .riseTime = std::max(0.010, 2.0 * reading),
            .lookBack = std::max(0.030, 4.0 * reading),
            .riseFactor = 3.0,
            .ambientTime = 0.5,
            .ambientFactor = 6.0,
            .holdTime = 0.08};
}

float thresholdAt(double loudness, float quiet, float loud) {
    constexpr double quietLevel = -52.0;  // dB
    constexpr double loudLevel = -20.0;
    const double level = 20.0 * std::log10(std::max(loudness, 1e-6));
    const double part = std::clamp((level - quietLevel) / (loudLevel - quietLevel), 0.0, 1.0);
    return quiet + (loud - quiet) * static_cast<float>(part);
}

}  // namespace bonkora::detector
