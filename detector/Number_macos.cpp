#include <cmath>
#include <locale>
#include <sstream>
#include <string>

#include "detector/Number.h"

namespace bonkora::detector {

template <>
std::optional<double> parseNumber<double>(std::string_view text) {
    // What a stream would take beside: blanks, "+" at the beginning, hexadecimal digits.
    if (text.empty() || text.front() == '+' ||
        text.find_first_not_of("+-.0123456789Ee") != std::string_view::npos) {
        return std::nullopt;
    }
    std::istringstream stream{std::string{text}};
    stream.imbue(std::locale::classic());
    double number = 0.0;
    stream >> number;
    if (stream.fail() || stream.peek() != std::istringstream::traits_type::eof() ||
        !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

}  // namespace bonkora::detector
