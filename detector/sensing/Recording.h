// Recording: a sensor's readings in a file, and a sensor that reads them out.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "detector/sensing/Sensor.h"
#include "detector/sensing/Ticker.h"

namespace bonkora::detector {

struct Recording {
    SensorKind kind = SensorKind::microphone;
    double rate = 0.0;  // readings a second
    std::vector<Frame> frames;
};

// A refusal leaves the file's name to the caller.

// WAV: sound of any number of channels, which are averaged, from 4 to 192 kHz.
platform::Result<Recording> parseWav(std::string_view bytes);

// CSV: lines of time in seconds and x, y, z in g, from 10 to 100000 a second; the times rise and
// are brought to their median step. One line of headings may stand first; lines that begin with
// "#" and blank lines are passed over.
platform::Result<Recording> parseCsv(std::string_view text);

// The file at `path`: WAV when it begins like one or is called so, CSV otherwise.
platform::Result<Recording> readRecording(const std::string& path);

// Reads out a recording as if it happened now.
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
