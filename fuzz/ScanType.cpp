// A channel's form as the kernel describes it: refused, or values that fit its bits.
#include <cstdint>
#include <string>

#include "detector/sensing/ScanLayout.h"
#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bonkora;
    const std::string type(data, data + size);
    auto element = detector::parseScanElement(type, 0);
    if (!element) {
        return 0;
    }
    fuzz::require(detector::layOut({&*element}) == element->storageBits / 8, "it is alone");
    const char scan[8] = {'\x80', '\x7f', '\xff', '\x00', '\x01', '\xfe', '\x55', '\xaa'};
    const auto value = element->valueIn(scan);
    // What lies above the value's bits only repeats its sign.
    if (element->isSigned) {
        const auto above = value >> (element->bits - 1);
        fuzz::require(above == 0 || above == -1, "the value fits its bits");
    } else if (element->bits < 64) {
        fuzz::require(static_cast<std::uint64_t>(value) >> element->bits == 0,
                      "the value fits its bits");
    }
    return 0;
}
