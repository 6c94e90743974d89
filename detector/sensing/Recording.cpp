#include "detector/sensing/Recording.h"

#include <utility>

#include "detector/sensing/SystemFiles.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

constexpr std::size_t largestRecording = 512UL * 1024 * 1024;  // bytes

}  // namespace

platform::Result<Recording> readRecording(const std::string& path) {
    const auto bytes = readSmallFile(path, largestRecording);
    if (!bytes) {
        return platform::Failed{"there is no such file, or it cannot be read"};
    }
    const bool isWav =
        bytes->starts_with("RIFF") || platform::lowercasedAscii(path).ends_with(".wav");
    return isWav ? parseWav(*bytes) : parseCsv(*bytes);
}

RecordingSensor::RecordingSensor(Recording recording, std::string name,
                                 std::unique_ptr<Ticker> theTicker)
    : about{recording.kind, std::move(name), recording.rate, true},
      recorded(std::move(recording.frames)),
      ticker(std::move(theTicker)) {}

SensorState RecordingSensor::read(std::vector<Frame>& frames) {
    const std::chrono::duration<double> passed = step * static_cast<double>(ticker->take());
    due += passed.count() * about.rate;
    const auto end = due < static_cast<double>(recorded.size()) ? static_cast<std::size_t>(due)
                                                                : recorded.size();
    frames.insert(frames.end(), recorded.begin() + static_cast<std::ptrdiff_t>(next),
                  recorded.begin() + static_cast<std::ptrdiff_t>(end));
    next = end;
    return {next == recorded.size() ? SensorState::Kind::ended : SensorState::Kind::listening, {}};
}

}  // namespace bonkora::detector
