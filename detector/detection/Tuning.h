// Tuning: the figures of the detection. Found with the tuning signals of bench/detection, whose
// figures in docs/detection.md come from other signals.
#pragma once

#include "detector/Signal.h"

namespace bonkora::detector {

struct Tuning {
    double highPass;       // Hz; below lie gravity, slow motion, wind
    double lowPass;        // Hz; above lie voices and key clicks
    double window;         // s from the impact to the decision
    double riseTime;       // s in which the impact gets going
    double lookBack;       // s before that, which were quieter
    double riseFactor;     // by which it rises above them
    double ambientTime;    // s over which the surroundings are averaged
    double ambientFactor;  // by which a peak exceeds their effective value
    double holdTime;       // s in which an impact's echo fades to 1/e
};

Tuning tuningFor(SensorKind kind, double rate);

// What a microphone heard of an impact, beside its strength.
struct Evidence {
    double peak = 0.0;        // of full scale
    double reference = 0.0;   // of full scale; a peak of this strength proves nothing by itself
    double before = 0.0;      // highest value in the look-back
    double lowEnergy = 0.0;   // 60 to 250 Hz, of the first 4 ms
    double midEnergy = 0.0;   // 250 to 1000 Hz, likewise
    double earlyClick = 0.0;  // mean energy above 1000 Hz, of the first 4 ms
    double lateClick = 0.0;   // likewise, of the window's last 4 ms
};

// Above 0 for a knock. Blows on a case sound deep, begin suddenly, and their click is over at once;
// voices swell, keep buzzing and have their strength in the middle.
double scoreOf(const Evidence& evidence);

}  // namespace bonkora::detector
