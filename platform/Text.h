// Text the way the rest of the system needs it: no locale, no surprises. Pure functions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace bonkora::platform {

// Whether the bytes are well-formed UTF-8 (no surrogates, no overlong forms, up to U+10FFFF).
bool isValidUtf8(std::string_view bytes);

// Without white space and line-break characters at both ends: U+0009 to U+000D, U+0085 and the
// Unicode separators, U+200B included. `text` is valid UTF-8.
std::string_view trimmed(std::string_view text);

// With the letters A to Z in lower case; every other byte stays.
std::string lowercasedAscii(std::string_view text);

// The shortest positional decimal that reads back as the same number, always with a fraction part:
// 0.0, 0.42, 10000000000000000.0. "inf", "-inf" and "nan" for what is no number.
std::string shortestDecimal(double value);

// Fixed point with exactly `decimals` decimals, to the nearest, "." as the separator: "%.3f" in
// the C locale.
std::string fixedDecimal(double value, int decimals);

std::string decimal(std::int64_t value);

}  // namespace bonkora::platform
