// Knocks on a computer's case: a physical model, and real ones from recordings.
#pragma once

#include <string>
#include <vector>

#include "bench/detection/Segment.h"

namespace bonkora::bench {

struct Impact {
    double time = 0.0;       // s
    double force = 0.0;      // in the model's own unit, or the recording's degree
    double amplitude = 0.0;  // undisturbed, in the sensor's unit, as the detector measures it
};

// A hand's or finger's blow: a push of 1 to 8 ms, shorter the harder, that sets the case swinging
// in a handful of damped modes, no two blows the same. `force` 1 is about full scale or 1 g.
Impact addKnock(Segment& segment, double time, double force, Random& random);

}  // namespace bonkora::bench
