#include "platform/Text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace bonkora::platform {
namespace {

// The bytes that `text` begins with if it begins with white space or a line break, else 0.
std::size_t leadingSpace(std::string_view text) {
    const auto byte = [&](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    const unsigned first = byte(0);
    if ((first >= 0x09 && first <= 0x0D) || first == ' ') {
        return 1;
    }
    if (first == 0xC2 && (byte(1) == 0x85 || byte(1) == 0xA0)) {
        return 2;
    }
    const unsigned scalar = (first & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
    const bool isSpace = scalar == 0x1680 || (scalar >= 0x2000 && scalar <= 0x200B) ||
                         scalar == 0x2028 || scalar == 0x2029 || scalar == 0x202F ||
                         scalar == 0x205F || scalar == 0x3000;
    return (first & 0xF0U) == 0xE0 && text.size() >= 3 && isSpace ? 3 : 0;
}

// How many bytes from `index` on are surely ASCII: as many eights as are nothing else.
std::size_t asciiFrom(std::string_view bytes, std::size_t index) {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    const std::size_t start = index;
    std::uint64_t eight = 0;
    for (; index + sizeof eight <= bytes.size(); index += sizeof eight) {
        std::memcpy(&eight, bytes.data() + index, sizeof eight);
        if ((eight & highBits) != 0) {
            break;
        }
    }
    return index - start;
}

// Where the last character begins.
std::size_t lastCharacter(std::string_view text) {
    std::size_t start = text.size() - 1;
    while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0U) == 0x80U) {
        --start;
    }
    return start;
}

}  // namespace

bool isValidUtf8(std::string_view bytes) {
    for (std::size_t index = asciiFrom(bytes, 0); index < bytes.size();) {
        const auto first = static_cast<unsigned char>(bytes[index++]);
        if (first < 0x80) {
            continue;
        }
        // The table of well-formed sequences: how many bytes follow, and the bounds of the first.
        int following = 0;
        unsigned lowest = 0x80;
        unsigned highest = 0xBF;
        if (first >= 0xC2 && first <= 0xDF) {
            following = 1;
        } else if (first >= 0xE0 && first <= 0xEF) {
            following = 2;
            lowest = first == 0xE0 ? 0xA0 : lowest;
            highest = first == 0xED ? 0x9F : highest;
        } else if (first >= 0xF0 && first <= 0xF4) {
            following = 3;
            lowest = first == 0xF0 ? 0x90 : lowest;
            highest = first == 0xF4 ? 0x8F : highest;
        } else {
            return false;
        }
        for (; following > 0; --following) {
            if (index == bytes.size()) {
                return false;
            }
            const auto next = static_cast<unsigned char>(bytes[index++]);
            if (next < lowest || next > highest) {
                return false;
            }
            lowest = 0x80;
            highest = 0xBF;
        }
        index += asciiFrom(bytes, index);
    }
    return true;
}

std::string_view trimmed(std::string_view text) {
    while (const std::size_t length = leadingSpace(text)) {
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        const std::size_t last = lastCharacter(text);
        if (leadingSpace(text.substr(last)) != text.size() - last) {
            break;
        }
        text = text.substr(0, last);
    }
    return text;
}

std::string lowercasedAscii(std::string_view text) {
    std::string result(text);
    for (char& letter : result) {
        if (letter >= 'A' && letter <= 'Z') {
            letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    return result;
}

std::string shortestDecimal(double value) {
    // The longest is the smallest subnormal: a sign, "0.", 323 zeros and up to 17 digits.
    std::array<char, 400> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed)
            .ptr;
    std::string text(buffer.data(), end);
    if (std::isfinite(value) && text.find('.') == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string fixedDecimal(double value, int decimals) {
    // Up to 309 digits, a sign, a point and the decimals.
    std::string buffer(static_cast<std::size_t>(decimals) + 320, '\0');
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, decimals)
                         .ptr;
    buffer.resize(static_cast<std::size_t>(end - buffer.data()));
    return buffer;
}

std::string decimal(std::int64_t value) {
    return std::to_string(value);
}

}  // namespace bonkora::platform
