// Tuning: the figures of the detection that are set by hand; docs/detection.md says what came of
// them. What a microphone's blow sounds like is Network's.
#pragma once

#include "detector/Signal.h"

namespace bonkora::detector {

struct Tuning {
    double highPass;       // Hz; below lie gravity, slow motion, wind
    double lowPass;        // Hz; above lie voices and key clicks
    double window;         // s from the impact in which the evidence lies
    double forceTime;      // s over which the force is averaged; 0: the highest value counts
    double riseTime;       // s in which the impact gets going
    double lookBack;       // s before that, which were quieter
    double riseFactor;     // by which it rises above them
    double ambientTime;    // s over which the surroundings are averaged
    double ambientFactor;  // by which a peak exceeds their effective value
    double holdTime;       // s in which an impact's echo fades to 1/e
};

Tuning tuningFor(SensorKind kind, double rate);

// The odds' logarithm that a microphone's blow must exceed, where the second before had this
// effective value: `quiet` up to 52 dB below full scale, `loud` from 20 dB on, between them in a
// straight line.
float thresholdAt(double loudness, float quiet, float loud);

}  // namespace bonkora::detector
