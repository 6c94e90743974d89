#include "detector/sensing/Recording.h"

#include "detector/sensing/SmallFile.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

constexpr std::size_t largestRecording = 512UL * 1024 * 1024;  // bytes

}  // namespace

std::variant<Recording, RecordingError> readRecording(const std::string& path) {
    const auto bytes = readSmallFile(path, largestRecording);
    if (!bytes) {
        return RecordingError{"there is no such file, or it cannot be read"};
    }
    const bool isWav =
        bytes->starts_with("RIFF") || platform::lowercasedAscii(path).ends_with(".wav");
    return isWav ? parseWav(*bytes) : parseCsv(*bytes);
}

}  // namespace bonkora::detector
