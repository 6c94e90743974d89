#include "platform/Text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

#include "tests/support/CommaLocale.h"

namespace bonkora::platform {
namespace {

TEST(Text, acceptsWellFormedUtf8) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("plain"));
    EXPECT_TRUE(isValidUtf8(std::string("nul\0inside", 10)));
    EXPECT_TRUE(isValidUtf8("é € 😫 ⚔️"));
    EXPECT_TRUE(isValidUtf8("\xEF\xBF\xBF\xF4\x8F\xBF\xBF\xED\x9F\xBF\xEE\x80\x80"));
}

TEST(Text, refusesWhatIsNotUtf8) {
    for (const char* const bytes :
         {"\xC3", "a\xE2\x82", "\xF0\x9F\x98", "\x80", "\xBF", "\xC0\xAF", "\xC1\x81",
          "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xFF", "\xFE", "\xC3(", "\xE2\x28\xA1", "\xE2\x82\x28"}) {
        EXPECT_FALSE(isValidUtf8(bytes)) << testing::PrintToString(std::string(bytes));
    }
}

TEST(Text, trimsWhiteSpaceAndLineBreaksFromBothEnds) {
    EXPECT_EQ(trimmed(" \t\v\f\r\n a b \r\n"), "a b");
    EXPECT_EQ(trimmed("\u0085\u00A0\u1680\u2000\u200Bx\u2028\u2029\u202F\u205F\u3000"), "x");
    EXPECT_EQ(trimmed(" \u3000\r "), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Text, trimsNothingElse) {
    for (const char* const text : {"\u200Cx\u200C", "\uFEFFx", "\u180Ex", "\u2060x\u2060", "é", "€",
                                   "\u1680x\u1681", "😫", "\x1Fx"}) {
        const std::string tail = std::string(text) == "\u1680x\u1681" ? "x\u1681" : text;
        EXPECT_EQ(trimmed(text), tail);
    }
}

TEST(Text, lowersAsciiLettersOnly) {
    EXPECT_EQ(lowercasedAscii("SLaP Ä [`{Z"), "slap Ä [`{z");
}

TEST(Text, writesTheShortestDecimalWithAFractionPart) {
    EXPECT_EQ(shortestDecimal(0), "0.0");
    EXPECT_EQ(shortestDecimal(0.42), "0.42");
    EXPECT_EQ(shortestDecimal(1.5), "1.5");
    EXPECT_EQ(shortestDecimal(0.00004), "0.00004");
    EXPECT_EQ(shortestDecimal(1e16), "10000000000000000.0");
    EXPECT_EQ(shortestDecimal(-3), "-3.0");
    EXPECT_EQ(shortestDecimal(0.1 + 0.2), "0.30000000000000004");
}

TEST(Text, theShortestDecimalReadsBackAsTheSameNumber) {
    using limits = std::numeric_limits<double>;
    for (const double value :
         {limits::max(), limits::min(), limits::denorm_min(), -limits::denorm_min(), 1.0 / 3}) {
        EXPECT_EQ(std::strtod(shortestDecimal(value).c_str(), nullptr), value);
    }
}

TEST(Text, roundsFixedDecimalsToTheNearest) {
    EXPECT_EQ(fixedDecimal(0.1, 3), "0.100");
    EXPECT_EQ(fixedDecimal(0.1234, 3), "0.123");
    EXPECT_EQ(fixedDecimal(0.0005, 3), "0.001");  // a little above the half
    EXPECT_EQ(fixedDecimal(0.0625, 3), "0.062");  // the half itself, to the even digit
    EXPECT_EQ(fixedDecimal(0.00004, 4), "0.0000");
    EXPECT_EQ(fixedDecimal(-1, 3), "-1.000");
    EXPECT_EQ(fixedDecimal(std::numeric_limits<double>::max(), 3).size(), 313U);
}

TEST(Text, numbersDoNotFollowTheLocale) {
    // Whichever of these is installed writes 0,5.
    for (const char* const name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
        std::setlocale(LC_ALL, name);
    }
    EXPECT_EQ(fixedDecimal(0.5, 3), "0.500");
    EXPECT_EQ(shortestDecimal(0.5), "0.5");
    EXPECT_EQ(decimal(-1234567), "-1234567");
    std::setlocale(LC_ALL, "C");
}

TEST(Text, numbersAreWrittenTheSameInALocaleWithACommaAndGroups) {
    const test::CommaLocale locale;
    EXPECT_EQ(fixedDecimal(0.05, 3), "0.050");
    EXPECT_EQ(fixedDecimal(1234.5, 3), "1234.500");
    EXPECT_EQ(shortestDecimal(0.42), "0.42");
    EXPECT_EQ(shortestDecimal(1234567.5), "1234567.5");
    EXPECT_EQ(decimal(1234567), "1234567");
}

}  // namespace
}  // namespace bonkora::platform
