#include "detector/detection/Tuning.h"

#include <algorithm>

namespace bonkora::detector {

Tuning tuningFor(SensorKind kind, double rate) {
    if (kind == SensorKind::microphone) {
        return {.highPass = 60.0,
                .lowPass = 2500.0,
                .clickPass = 1500.0,
                .window = 0.012,
                .riseTime = 0.005,
                .lookBack = 0.025,
                .riseFactor = 3.0,
                .ambientTime = 0.4,
                .ambientFactor = 6.0,
                .holdTime = 0.08,
                .earlyPart = 0.5,
                .clickPart = 0.02,
                .latePart = 1.0};
    }
    // Slow sensors see a knock in two or three readings.
    const double reading = 1.0 / rate;
    return {.highPass = 15.0,
            .lowPass = rate,
            .clickPass = rate,
            .window = std::max(0.010, reading),
            .riseTime = std::max(0.010, 2.0 * reading),
            .lookBack = std::max(0.030, 4.0 * reading),
            .riseFactor = 2.5,
            .ambientTime = 0.5,
            .ambientFactor = 5.0,
            .holdTime = 0.08,
            .earlyPart = 0.0,
            .clickPart = 0.0,
            .latePart = 1.0};
}

}  // namespace bonkora::detector
