// SensorSource: opens the sensor that the user asked for, again whenever it has gone. One thread.
#pragma once

#include <memory>
#include <string>
#include <variant>
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

// The open sensor, or what was looked for and why nothing was found, for people.
std::variant<std::unique_ptr<Sensor>, std::string> openSensor(const SensorChoice& choice);

// The accelerometer part of it alone.
std::variant<std::unique_ptr<Sensor>, std::string> openAnyAccelerometer(const SensorChoice& choice);

// One line for each sensor that is there.
std::vector<std::string> listSensors(const SystemRoots& roots);

}  // namespace bonkora::detector
