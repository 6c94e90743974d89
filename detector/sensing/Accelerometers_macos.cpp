#include "detector/sensing/Accelerometers.h"

namespace bonkora::detector {

// Those of Macs answer only to interfaces that are described nowhere.
const std::string_view whyNoAccelerometer = "those of Macs are not read";

std::vector<AccelerometerFiles> findAccelerometers(const SystemRoots& /*roots*/) {
    return {};
}

OpenedSensor openAccelerometer(const AccelerometerFiles& /*files*/, const SystemRoots& /*roots*/) {
    return platform::Failed{std::string{whyNoAccelerometer}};
}

}  // namespace bonkora::detector
