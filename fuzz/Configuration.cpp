// The detector's configuration, whatever the file holds: settings in range, complaints in words.
#include "detector/program/Configuration.h"

#include <cstdint>
#include <string_view>

#include "detector/program/Options.h"
#include "fuzz/Require.h"
#include "platform/Text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bonkora;
    const auto configuration =
        detector::parseConfiguration({reinterpret_cast<const char*>(data), size});
    fuzz::require(detector::isSensorChoice(configuration.sensor), "the sensor is one of ours");
    for (const auto& complaint : configuration.complaints) {
        fuzz::require(!complaint.empty() && platform::isValidUtf8(complaint),
                      "a complaint is text");
    }
    return 0;
}
