// What a laptop hears and feels when nobody knocks: each adds its own to a segment, at a level
// drawn anew. All are models; Speech and the detector's own voice play recordings.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/detection/Segment.h"

namespace bonkora::bench {

struct Background {
    std::string name;
    std::function<void(Segment&, Random&)> add;
};

std::vector<Background> microphoneBackgrounds();
std::vector<Background> accelerometerBackgrounds();

// Music whose drums are to be felt: they are blows, and are heard as such.
Background bigLoudspeakers();

// Recorded sounds, one after the other with pauses, each brought to a peak between 0.05 and 0.7 of
// full scale. `sounds` have the segment's rate.
Background recorded(std::string name, std::vector<std::vector<double>> sounds);

}  // namespace bonkora::bench
