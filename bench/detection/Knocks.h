// Knocks on a computer's case: a physical model.
#pragma once

#include <string>
#include <vector>

#include "bench/detection/Segment.h"

namespace bonkora::bench {

struct Impact {
    double time = 0.0;       // s
    double force = 0.0;      // in the model's own unit
    double amplitude = 0.0;  // undisturbed, in the sensor's unit, as the detector measures it
};

// A blow of knuckle, palm or fist on lid, palm rest or desk: a push of 1 to 8 ms, shorter the
// harder, that sets what is hit swinging in a handful of damped modes, no two blows the same; it
// comes between two readings. `force` 1 is about full scale or 1 g.
Impact addKnock(Segment& segment, double time, double force, Random& random);

}  // namespace bonkora::bench
