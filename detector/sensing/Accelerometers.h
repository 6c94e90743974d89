// Accelerometers: finding and opening the ones that this computer has; on macOS none. One thread.
//
// Two families of system files are known: industrial I/O (bus/iio/devices) and the position files
// of older laptops (devices/platform). Opening sets an industrial I/O device to its fastest rate
// and, where the program may, to buffered reading; otherwise the files are polled.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "detector/sensing/Sensor.h"

namespace bonkora::detector {

// Of acceleration in m/s^2, as the kernel tells it, to g; by definition.
inline constexpr double standardGravity = 9.80665;

struct AccelerometerFiles {
    enum class Family { industrialIo, position };
    Family family = Family::industrialIo;
    std::string id;      // "iio:device0", "lis3lv02d"
    std::string name;    // as the device calls itself
    std::string folder;  // of its attribute files
    bool inLid = false;  // a second one, behind the screen: blows on the base hardly reach it
};

// The folders under which a system keeps its files; others in tests.
struct SystemRoots {
    std::string sysfs = "/sys";
    std::string devices = "/dev";
};

// Said where none is found.
extern const std::string_view whyNoAccelerometer;

// All that are there: industrial I/O first, those in the base before those in the lid, in the order
// of their numbers.
std::vector<AccelerometerFiles> findAccelerometers(const SystemRoots& roots);

// The open sensor, or why it cannot be read.
OpenedSensor openAccelerometer(const AccelerometerFiles& files, const SystemRoots& roots);

// What openAccelerometer() tries in turn.
OpenedSensor openBuffered(const AccelerometerFiles& files, const SystemRoots& roots);
OpenedSensor openPolled(const AccelerometerFiles& files);

// Sets the fastest rate up to 1600 readings a second that the device offers, or takes where it has
// no list, and no hysteresis, where that may be done; tells the rate then in use, or nothing when
// the device names none.
class HeldSettings;
std::optional<double> chooseRate(const std::string& folder, HeldSettings& settings);

// Readings a second that `read` gives without a pause, judged by at most 20 of them or a tenth of a
// second; 0 when one of them fails. `now` is the clock.
double measuredRate(const std::function<bool()>& read,
                    const std::function<std::chrono::duration<double>()>& now);

// One axis' attribute, its own or the one shared by all: "in_accel_x_scale" or "in_accel_scale".
std::optional<double> readAxisNumber(const std::string& folder, char axis,
                                     const std::string& attribute);

}  // namespace bonkora::detector
