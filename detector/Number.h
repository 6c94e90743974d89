// Numbers out of text, independent of any locale.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace bonkora::detector {

// The whole text as a finite decimal number, or nothing. No sign "+", no blanks.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc{} || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

// The C++ library of macOS knows from_chars() for whole numbers only.
template <>
std::optional<double> parseNumber<double>(std::string_view text);

}  // namespace bonkora::detector
