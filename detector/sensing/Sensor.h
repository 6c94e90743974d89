// Sensor: a source of readings at an even rate. One thread; it never waits: its descriptor says
// when there is something to read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "detector/Signal.h"
#include "platform/Result.h"

namespace bonkora::detector {

struct SensorDescription {
    SensorKind kind = SensorKind::microphone;
    std::string name;         // for people
    double rate = 0.0;        // readings a second
    bool isRecorded = false;  // before: it hears nothing of what is played now
};

struct SensorState {
    enum class Kind {
        listening,
        ended,  // a recording is over
        lost,   // the device is gone or fails; `reason` says why
    };
    Kind kind = Kind::listening;
    std::string reason;
};

class Sensor {
  public:
    Sensor() = default;
    Sensor(const Sensor&) = delete;
    Sensor& operator=(const Sensor&) = delete;
    virtual ~Sensor() = default;

    virtual const SensorDescription& description() const = 0;
    // Polls as readable, or as failed, when read() has something to say.
    virtual int descriptor() const = 0;
    // Appends the readings that have arrived since the last call.
    virtual SensorState read(std::vector<Frame>& frames) = 0;
};

// The open sensor, or why there is none.
using OpenedSensor = platform::Result<std::unique_ptr<Sensor>>;

}  // namespace bonkora::detector
