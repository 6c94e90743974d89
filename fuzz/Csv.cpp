// A recording of motion, whatever the file holds: frames that make sense, or a reason.
#include <cmath>
#include <cstdint>
#include <string_view>

#include "detector/sensing/Recording.h"
#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bonkora;
    const auto result = detector::parseCsv({reinterpret_cast<const char*>(data), size});
    if (!result) {
        fuzz::require(!result.error().empty(), "a refusal has a reason");
        return 0;
    }
    const auto& recording = *result;
    fuzz::require(recording.frames.size() >= 2, "a recording holds two readings");
    fuzz::require(recording.rate >= 9.99 && recording.rate <= 100001, "the rate is in range");
    for (const auto& frame : recording.frames) {
        for (const float value : frame) {
            fuzz::require(std::isfinite(value), "every reading is a number");
        }
    }
    return 0;
}
