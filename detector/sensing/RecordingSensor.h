// RecordingSensor: reads out a recording as if it happened now.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <vector>

#include "detector/sensing/Recording.h"
#include "detector/sensing/Ticker.h"

namespace bonkora::detector {

class RecordingSensor final : public Sensor {
  public:
    // What one tick stands for.
    static constexpr std::chrono::milliseconds step{5};

    RecordingSensor(Recording recording, std::string name, std::unique_ptr<Ticker> ticker);

    const SensorDescription& description() const override { return about; }
    int descriptor() const override { return ticker->descriptor(); }
    SensorState read(std::vector<Frame>& frames) override;

  private:
    const SensorDescription about;
    const std::vector<Frame> recorded;
    const std::unique_ptr<Ticker> ticker;
    double due = 0.0;  // readings
    std::size_t next = 0;
};

}  // namespace bonkora::detector
