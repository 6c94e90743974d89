#include "runner/PromptText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <iterator>

#include "platform/Text.h"

namespace bonkora::runner {
namespace {

struct CharacterRange {
    char32_t first;
    char32_t last;
};

// Characters without a picture: Unicode's properties Default_Ignorable_Code_Point, the categories
// Cf, Zl and Zp, and the noncharacters of the first plane. In order.
constexpr std::array<CharacterRange, 34> invisible{{
    {0x00AD, 0x00AD},    // soft hyphen
    {0x034F, 0x034F},    // combining grapheme joiner
    {0x0600, 0x0605},    // Arabic number signs
    {0x061C, 0x061C},    // Arabic letter mark
    {0x06DD, 0x06DD},    // Arabic end of ayah
    {0x070F, 0x070F},    // Syriac abbreviation mark
    {0x0890, 0x0891},    // Arabic currency marks
    {0x08E2, 0x08E2},    // Arabic disputed end of ayah
    {0x115F, 0x1160},    // Hangul fillers
    {0x17B4, 0x17B5},    // Khmer inherent vowels
    {0x180B, 0x180F},    // Mongolian variation selectors and vowel separator
    {0x200B, 0x200F},    // zero-width space and joiners, direction marks
    {0x2028, 0x202E},    // line and paragraph separators, direction embeddings and overrides
    {0x2060, 0x206F},    // word joiner, invisible operators, direction isolates
    {0x3164, 0x3164},    // Hangul filler
    {0xFDD0, 0xFDEF},    // noncharacters
    {0xFE00, 0xFE0F},    // variation selectors
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFA0, 0xFFA0},    // half-width Hangul filler
    {0xFFF0, 0xFFFB},    // reserved, interlinear annotation
    {0xFFFE, 0xFFFF},    // noncharacters
    {0x110BD, 0x110BD},  // Kaithi number signs
    {0x110CD, 0x110CD},  {0x13430, 0x1343F},  // Egyptian format controls
    {0x1BCA0, 0x1BCA3},                       // shorthand format controls
    {0x1D173, 0x1D17A},                       // musical format controls
    {0x1FFFE, 0x1FFFF},                       // noncharacters
    {0x2FFFE, 0x2FFFF},  {0x3FFFE, 0x3FFFF}, {0x4FFFE, 0x4FFFF},
    {0x5FFFE, 0x5FFFF},  {0xDFFFE, 0xDFFFF}, {0xE0000, 0xE0FFF},  // tags, more variation selectors
    {0xEFFFE, 0x10FFFF},
}};

bool isInvisible(char32_t character) {
    const auto* const after =
        std::upper_bound(invisible.begin(), invisible.end(), character,
                         [](char32_t c, const CharacterRange& range) { return c < range.first; });
    return after != invisible.begin() && character <= std::prev(after)->last;
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F);
}

// Unicode's category Zs, and the Braille pattern without a dot.
bool isBlank(char32_t character) {
    constexpr std::u32string_view others = U"\u00A0\u1680\u202F\u205F\u2800\u3000";
    return character == U' ' || (character >= 0x2000 && character <= 0x200A) ||
           others.find(character) != others.npos;
}

// Takes the first character off `text`, which is valid UTF-8 and not empty.
char32_t takeCharacter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        character = (character << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    text.remove_prefix(length);
    return character;
}

std::string named(const char* kind, char32_t character) {
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   static_cast<unsigned long>(character), 16);
    std::string number(digits.data(), end.ptr);
    std::transform(number.begin(), number.end(), number.begin(),
                   [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    number.insert(0, number.size() < 4 ? 4 - number.size() : 0, '0');
    return std::string(kind) + " U+" + number;
}

}  // namespace

std::optional<std::string> whyNotShown(std::string_view text) {
    if (!platform::isValidUtf8(text)) {
        return "bytes that are not UTF-8";
    }
    int blanks = 0;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        if (isControl(character)) {
            return named("the control character", character);
        }
        if (isInvisible(character)) {
            return named("the invisible character", character);
        }
        blanks = isBlank(character) ? blanks + 1 : 0;
        if (blanks > mostBlanksInARow) {
            return "more than sixteen blanks in a row";
        }
    }
    return std::nullopt;
}

}  // namespace bonkora::runner
