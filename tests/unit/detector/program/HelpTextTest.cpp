#include "detector/program/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Text.h"

namespace bonkora::detector {

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(HelpTextTest, noLineCountsAsAKnockWhenAnApplicationReadsIt) {
    for (const auto text : {helpText, versionText}) {
        const auto lowered = platform::lowercasedAscii(text);
        for (const char* const word : {"slap", "hit", "playing"}) {
            EXPECT_THAT(lowered, Not(HasSubstr(word)));
        }
    }
}

TEST(HelpTextTest, fitsAConsoleOfAHundredColumns) {
    std::string_view rest = helpText;
    while (!rest.empty()) {
        const auto line = rest.substr(0, rest.find('\n'));
        EXPECT_LE(line.size(), 100U) << line;
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    }
}

TEST(HelpTextTest, namesEveryOptionAndEveryKey) {
    for (const char* const word :
         {"--stdio", "--cooldown",     "--min-amplitude", "--fast",    "--volume-scaling",
          "--sexy",  "--halo",         "--custom",        "--sensor",  "--as-fast-as-possible",
          "--once",  "--list-sensors", "--help",          "--version", "--sysfs",
          "--dev",   "sensor =",       "device =",        "sounds =",  "mute ="}) {
        EXPECT_THAT(helpText, HasSubstr(word));
    }
}

TEST(HelpTextTest, theVersionIsOneLine) {
    EXPECT_THAT(versionText, testing::StartsWith("spank "));
    EXPECT_THAT(versionText, Not(HasSubstr("\n")));
}

}  // namespace

}  // namespace bonkora::detector
