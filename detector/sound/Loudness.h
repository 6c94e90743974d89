// How loud a knock is answered. Pure.
#pragma once

#include "detector/sensing/Sensor.h"

namespace bonkora::detector {

// The force that is answered at full volume: 1 of full scale for a microphone, 4 g for an
// accelerometer.
double fullForce(SensorKind kind);

// The part of full volume, 0.05 to 1: 26 dB below it for a knock at the minimum amplitude, full
// from fullForce() on, and in between the same number of dB for each doubling of the force. A
// minimum below a thousandth counts as that; one of full force or more gives full volume.
double loudnessFor(double amplitude, double minAmplitude, SensorKind kind);

}  // namespace bonkora::detector
