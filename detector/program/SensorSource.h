// SensorSource: opens the sensor that the user asked for, again whenever it has gone. One thread.
#pragma once

#include <string>
#include <vector>

#include "detector/sensing/Accelerometers.h"
#include "detector/sensing/Sensor.h"

namespace bonkora::detector {

struct SensorChoice {
    std::string sensor = "auto";  // as --sensor
    std::string device;           // its name or number; empty: any
    bool asFastAsPossible = false;
    SystemRoots roots;
};

// `auto` passes over an accelerometer that sustains fewer readings a second: it misses knocks.
inline constexpr double lowestAutoRate = 200.0;
// Nor is one with fewer of use to who asks for it: a knock has faded within 20 to 50 ms, and falls
// between two readings.
inline constexpr double lowestRate = 50.0;

struct OpenedAccelerometer {
    AccelerometerFiles files;
    OpenedSensor sensor;
};

// All that are there, opened.
std::vector<OpenedAccelerometer> openAccelerometers(const SystemRoots& roots);

// The one that was chosen, the others being closed, or why it is none of them.
OpenedSensor chooseAccelerometer(const SensorChoice& choice,
                                 std::vector<OpenedAccelerometer> opened);

// The open sensor, or what was looked for and why nothing was found, for people. `accelerometers`
// are taken where there are any, such as those that root has opened; otherwise it looks for itself.
OpenedSensor openSensor(const SensorChoice& choice,
                        std::vector<OpenedAccelerometer> accelerometers = {});

// One line for each sensor that is there: what it is, its name, and what can be said against it.
std::vector<std::string> listSensors(const SystemRoots& roots);

}  // namespace bonkora::detector
