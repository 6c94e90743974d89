// The three sets of sounds, composed here. Pure.
#pragma once

#include <vector>

#include "detector/synthesis/Waveform.h"

namespace bonkora::detector::synthesis {

std::vector<Waveform> pain();  // yelps, in no order
std::vector<Waveform> sexy();  // from a calm hum to a breathless cry
std::vector<Waveform> halo();  // the lines of one chant, to be sung one after the other

}  // namespace bonkora::detector::synthesis
