#include "detector/detection/Tuning.h"

#include <algorithm>
#include <cmath>

namespace bonkora::detector {

Tuning tuningFor(SensorKind kind, double rate) {
    if (kind == SensorKind::microphone) {
        return {.highPass = 60.0,
                .lowPass = 350.0,
                .window = 0.011,
                .riseTime = 0.003,
                .lookBack = 0.025,
                .riseFactor = 3.2,
                .ambientTime = 0.4,
                .ambientFactor = 5.0,
                .holdTime = 0.08};
    }
    // Slow sensors see a knock in two or three readings.
    const double reading = 1.0 / rate;
    return {.highPass = 15.0,
            .lowPass = rate,
            .window = std::max(0.008, reading),
            .riseTime = std::max(0.010, 2.0 * reading),
            .lookBack = std::max(0.030, 4.0 * reading),
            .riseFactor = 3.0,
            .ambientTime = 0.5,
            .ambientFactor = 6.0,
            .holdTime = 0.08};
}

double scoreOf(const Evidence& evidence) {
    const double nothing = 1e-9;
    const auto decades = [=](double a, double b) {
        return std::log10(std::max(a, nothing) / std::max(b, nothing));
    };
    const double strength = decades(evidence.peak, evidence.reference);
    const double depth = std::clamp(decades(evidence.lowEnergy, evidence.midEnergy), -0.55, 0.3);
    const double lingering =
        std::clamp(decades(evidence.lateClick, evidence.earlyClick), -1.0, 1.0);
    const double suddenness = std::clamp(decades(evidence.peak, evidence.before), 0.0, 1.5);
    // The weights were found by hand with `detection-bench --tuning`: raised where knocks were
    // missed and lowered where voices and music were taken for knocks, until neither gained without
    // the other losing. The limits above keep one extreme term, such as a stick's missing depth,
    // from deciding alone. The figures of other signals are in docs/detection.md.
    return 10.0 * strength + 14.0 * depth - 6.0 * lingering + 6.0 * suddenness - 11.0;
}

}  // namespace bonkora::detector
