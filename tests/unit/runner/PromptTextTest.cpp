#include "runner/PromptText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace bonkora::runner {
namespace {

using namespace std::string_literals;

TEST(PromptText, isAnyTextThatHidesNothing) {
    for (const char* const text :
         {"", "\"/A/spank\" \"--stdio\" \"--cooldown\" \"750\"", "/home/é/Müsik 👋 — 音楽/سلام",
          "a                b", "e\u0301"}) {
        EXPECT_EQ(whyNotShown(text), std::nullopt) << text;
    }
}

TEST(PromptText, isUtf8) {
    for (const char* const text : {"a\xFF", "\xC3", "\xC0\xAF", "\xED\xA0\x80"}) {
        EXPECT_EQ(whyNotShown(text), "bytes that are not UTF-8");
    }
}

TEST(PromptText, holdsNoControlCharacter) {
    EXPECT_EQ(whyNotShown("a\nb"), "the control character U+000A");
    EXPECT_EQ(whyNotShown("\t"), "the control character U+0009");
    EXPECT_EQ(whyNotShown("\0"s), "the control character U+0000");
    EXPECT_EQ(whyNotShown("\x7F"), "the control character U+007F");
    EXPECT_EQ(whyNotShown("\u0085"), "the control character U+0085");
    EXPECT_EQ(whyNotShown("\u009F"), "the control character U+009F");
    EXPECT_EQ(whyNotShown("\u00A0\u00A1"), std::nullopt);
}

TEST(PromptText, holdsNoInvisibleCharacter) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\u00AD", "U+00AD"},      {"\u034F", "U+034F"},      {"\u200B", "U+200B"},
        {"\u200F", "U+200F"},      {"\u2028", "U+2028"},      {"\u202E", "U+202E"},
        {"\u2060", "U+2060"},      {"\u2066", "U+2066"},      {"\u3164", "U+3164"},
        {"\uFE0F", "U+FE0F"},      {"\uFEFF", "U+FEFF"},      {"\uFFFE", "U+FFFE"},
        {"\U0001D173", "U+1D173"}, {"\U000E0041", "U+E0041"}, {"\U0010FFFF", "U+10FFFF"}};
    for (const auto& [character, name] : cases) {
        EXPECT_EQ(whyNotShown("a" + character + "b"), "the invisible character " + name);
    }
}

TEST(PromptText, holdsSeenCharactersBesideTheInvisibleOnes) {
    for (const char* const text :
         {"\u00AC", "\u00AE", "\u2010", "\u2070", "\uFDF0", "\uFE10", "\U0001F3B5", "\U0001FFFD"}) {
        EXPECT_EQ(whyNotShown(text), std::nullopt) << text;
    }
}

TEST(PromptText, holdsSixteenBlanksInARowAtMost) {
    const std::string sixteen(16, ' ');
    EXPECT_EQ(whyNotShown(sixteen + "a" + sixteen), std::nullopt);
    for (const char* const blank : {" ", "\u00A0", "\u1680", "\u2003", "\u2800", "\u3000"}) {
        EXPECT_EQ(whyNotShown("a" + sixteen + blank), "more than sixteen blanks in a row");
    }
}

std::string utf8(char32_t c) {
    const auto byte = [](char32_t value) { return static_cast<char>(value); };
    const auto rest = [&](unsigned shift, char32_t value) {
        return byte(0x80U | ((value >> shift) & 0x3FU));
    };
    return c < 0x80    ? std::string{byte(c)}
           : c < 0x800 ? std::string{byte(0xC0U | (c >> 6U)), rest(0, c)}
           : c < 0x10000
               ? std::string{byte(0xE0U | (c >> 12U)), rest(6, c), rest(0, c)}
               : std::string{byte(0xF0U | (c >> 18U)), rest(12, c), rest(6, c), rest(0, c)};
}

// Every character there can be, by itself and often in a row. The invisible ones are the 4,267 that
// Unicode 14 counts as formats, separators, default ignorable ones or noncharacters, without the 14
// noncharacters of planes where nothing else is either, with the 131,068 for private use in the
// last two planes, and with the seven places that Unicode 15 gave to more formats.
TEST(PromptText, holdsEachOfUnicodesCharactersOrNamesIt) {
    int controls = 0;
    int invisible = 0;
    int blanks = 0;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF) {
            continue;  // surrogates, which UTF-8 does not know
        }
        const std::string one = utf8(c);
        const auto why = whyNotShown(one);
        if (why) {
            char number[16];
            std::snprintf(number, sizeof number, " U+%04X", static_cast<unsigned>(c));
            ASSERT_TRUE(why->ends_with(number)) << *why << number;
            ++(why->starts_with("the control character") ? controls : invisible);
        } else if (c < 0x10000) {
            std::string many;
            for (int i = 0; i < 17; ++i) {
                many += one;
            }
            blanks += whyNotShown(many) ? 1 : 0;
        }
    }
    EXPECT_EQ(controls, 65);
    EXPECT_EQ(invisible, 4'267 - 14 + 131'068 + 7);
    EXPECT_EQ(blanks, 18);  // the category of separators of words, and the empty Braille pattern
}

// The application counts every line that holds one of these words.
TEST(PromptText, isRefusedInWordsThatCountForNothing) {
    for (const char* const text : {"\xFF", "\n", "\u200B", "                 "}) {
        const std::string why = whyNotShown(text).value();
        for (const char* const word : {"slap", "hit", "playing"}) {
            EXPECT_EQ(why.find(word), std::string::npos) << why;
        }
    }
}

}  // namespace
}  // namespace bonkora::runner
