#include <cmath>

#include "detector/Number.h"

namespace bonkora::detector {

template <>
std::optional<double> parseNumber<double>(std::string_view text) {
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc{} || result.ptr != end || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

}  // namespace bonkora::detector
