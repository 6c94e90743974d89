#include "detector/sound/Loudness.h"

#include <algorithm>
#include <cmath>

namespace bonkora::detector {

namespace {

constexpr double range = 26.0;  // dB between the softest answer and the loudest
constexpr double lowestMinimum = 0.001;

}  // namespace

double fullForce(SensorKind kind) {
    return kind == SensorKind::microphone ? 1.0 : 4.0;
}

double loudnessFor(double amplitude, double minAmplitude, SensorKind kind) {
    const double softest = std::max(minAmplitude, lowestMinimum);
    const double loudest = fullForce(kind);
    if (softest >= loudest) {
        return 1.0;
    }
    const double part =
        std::log(std::max(amplitude, softest) / softest) / std::log(loudest / softest);
    return std::pow(10.0, range / 20.0 * (std::min(part, 1.0) - 1.0));
}

}  // namespace bonkora::detector
