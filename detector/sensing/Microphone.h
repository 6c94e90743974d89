// Microphone: the sound that the computer's default, or a named, recording device hears.
#pragma once

#include <string>
#include <vector>

#include "detector/sensing/Sensor.h"

namespace bonkora::detector {

// The open sensor, or why there is none. `device`: its name, or empty for the default one.
OpenedSensor openMicrophone(const std::string& device);

// The names of the recording devices that are there.
std::vector<std::string> findMicrophones();

}  // namespace bonkora::detector
