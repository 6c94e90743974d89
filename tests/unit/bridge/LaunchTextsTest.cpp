#include "bridge/LaunchTexts.h"

#include <gtest/gtest.h>

namespace bonkora {
namespace {

const std::vector<std::string> arguments{"--stdio", "--cooldown", "750"};

TEST(LaunchTexts, theLauncherScriptBecomesTheDetector) {
    EXPECT_EQ(launcherScript("/A/spank", arguments),
              "#!/bin/bash\nexec \"/A/spank\" \"--stdio\" \"--cooldown\" \"750\"");
}

TEST(LaunchTexts, thePrivilegedCommandQuotesEveryWord) {
    EXPECT_EQ(privilegedCommand("/A/spank", arguments),
              "\"/A/spank\" \"--stdio\" \"--cooldown\" \"750\"");
    EXPECT_EQ(privilegedCommand("/A b/spank", {"/my folder", ""}),
              "\"/A b/spank\" \"/my folder\" \"\"");
    EXPECT_EQ(privilegedCommand("/A/spank", {}), "\"/A/spank\" ");
}

TEST(LaunchTexts, theAppleScriptTextEscapesDoubleQuotes) {
    EXPECT_EQ(appleScriptText(privilegedCommand("/A/spank", arguments)),
              "do shell script \"\\\"/A/spank\\\" \\\"--stdio\\\" \\\"--cooldown\\\" \\\"750\\\"\" "
              "with administrator privileges");
}

TEST(LaunchTexts, theAppleScriptTextPassesEverythingElseUnchanged) {
    EXPECT_EQ(appleScriptText(R"(\n $HOME `id` 'é')"),
              R"(do shell script "\n $HOME `id` 'é'" with administrator privileges)");
}

TEST(LaunchTexts, aDoubleQuoteInAnArgumentUnbalancesTheScript) {
    EXPECT_EQ(launcherScript("/A/sp\"ank", {"a\"b"}), "#!/bin/bash\nexec \"/A/sp\"ank\" \"a\"b\"");
}

TEST(LaunchTexts, aBackslashIsLeftToBeReadAsAnEscape) {
    EXPECT_EQ(appleScriptText(privilegedCommand("/A\\tb/spank", {})),
              "do shell script \"\\\"/A\\tb/spank\\\" \" with administrator privileges");
}

}  // namespace
}  // namespace bonkora
