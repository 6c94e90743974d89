// Recording: a sensor's readings in a file. Values; any thread.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "detector/sensing/Sensor.h"

namespace bonkora::detector {

struct Recording {
    SensorKind kind = SensorKind::microphone;
    double rate = 0.0;  // readings a second
    std::vector<Frame> frames;
};

// Why there is no recording, for people; the file's name is the caller's to add.
struct RecordingError {
    std::string reason;
};

// WAV: sound of any number of channels, which are averaged, from 4 to 192 kHz.
std::variant<Recording, RecordingError> parseWav(std::string_view bytes);

// CSV: lines of time in seconds and x, y, z in g, from 10 to 100000 a second; the times rise and
// are brought to their median step. One line of headings may stand first; lines that begin with
// "#" and blank lines are passed over.
std::variant<Recording, RecordingError> parseCsv(std::string_view text);

// The file at `path`: WAV when it begins like one or is called so, CSV otherwise.
std::variant<Recording, RecordingError> readRecording(const std::string& path);

}  // namespace bonkora::detector
