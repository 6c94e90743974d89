// Tuning: the figures of the detection. Found with the tuning signals of bench/detection, whose
// figures in docs/detection.md come from other signals.
#pragma once

#include "detector/sensing/Sensor.h"

namespace bonkora::detector {

struct Tuning {
    double highPass;       // Hz; below lie gravity, slow motion, wind
    double lowPass;        // Hz; above lie key clicks and hiss
    double clickPass;      // Hz; the contact's click lies above
    double window;         // s from the impact to the decision
    double riseTime;       // s in which the impact reaches its strength
    double lookBack;       // s before the impact that were quieter
    double riseFactor;     // by which it rises above them
    double ambientTime;    // s over which the surroundings are averaged
    double ambientFactor;  // by which a peak exceeds their effective value
    double holdTime;       // s in which an impact's echo fades to 1/e
    double earlyPart;      // of the peak, reached within the rise time
    double clickPart;      // of the peak, found above clickPass
    double latePart;       // of the peak, not exceeded in the window's second half
};

Tuning tuningFor(SensorKind kind, double rate);

}  // namespace bonkora::detector
