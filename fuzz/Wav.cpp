// A recording of sound, whatever the file holds: frames that make sense, or a reason.
#include <cmath>
#include <cstdint>
#include <string_view>

#include "detector/sensing/Recording.h"
#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bonkora;
    const auto result = detector::parseWav({reinterpret_cast<const char*>(data), size});
    if (!result) {
        fuzz::require(!result.error().empty(), "a refusal has a reason");
        return 0;
    }
    const auto& recording = *result;
    fuzz::require(!recording.frames.empty(), "a recording holds something");
    fuzz::require(recording.rate >= 4000 && recording.rate <= 192000, "the rate is in range");
    for (const auto& frame : recording.frames) {
        fuzz::require(std::isfinite(frame[0]), "every sample is a number");
    }
    return 0;
}
