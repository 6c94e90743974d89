#include "runner/Script.h"

#include <gtest/gtest.h>

#include <string>

#include "runner/Failure.h"

namespace bonkora::runner {
namespace {

ShellCommand understood(std::string_view script) {
    auto command = parseScript(script);
    if (!command) {
        ADD_FAILURE() << "not understood: " << script << ": " << command.error().message;
        return {};
    }
    return std::move(*command);
}

// The error line; "understood" when there is no error.
std::string refused(std::string_view script) {
    const auto command = parseScript(script);
    return command ? "understood" : syntaxErrorLine(command.error());
}

TEST(Script, yieldsTheTextOfTheCommand) {
    const ShellCommand command = understood("do shell script \"exit 3\"");
    EXPECT_EQ(command.text, "exit 3");
    EXPECT_FALSE(command.withAdministratorPrivileges);
    EXPECT_EQ(command.range, (ScriptRange{0, 24}));
}

TEST(Script, understandsThePrivilegesClause) {
    const ShellCommand command =
        understood("do shell script \"\\\"/A/b\\\" \\\"--c\\\"\" with administrator privileges");
    EXPECT_EQ(command.text, "\"/A/b\" \"--c\"");
    EXPECT_TRUE(command.withAdministratorPrivileges);
    EXPECT_EQ(command.range, (ScriptRange{0, 64}));
}

TEST(Script, decodesTheFiveEscapesAndNothingElse) {
    EXPECT_EQ(understood(R"(do shell script "\"\\\n\r\t\\n")").text, "\"\\\n\r\t\\n");
    EXPECT_EQ(understood("do shell script \"a\nb$x `c` 'd' é\"").text, "a\nb$x `c` 'd' é");
}

TEST(Script, allowsBlanksBetweenWordsAndEmptyLinesAround) {
    const ShellCommand command =
        understood("\r\n  do\tshell  script\"x\"\t with  administrator privileges \n\n");
    EXPECT_EQ(command.text, "x");
    EXPECT_TRUE(command.withAdministratorPrivileges);
    EXPECT_EQ(command.range, (ScriptRange{4, 55}));
}

TEST(Script, countsItsOffsetsInCharacters) {
    EXPECT_EQ(understood("do shell script \"é👋\"").range, (ScriptRange{0, 20}));
}

TEST(Script, refusesWhatIsNoSuchStatement) {
    const std::string expected =
        "syntax error: Expected do shell script and a text in double "
        "quotes. (-2741)\n";
    EXPECT_EQ(refused(""), "0:0: " + expected);
    EXPECT_EQ(refused(" \n "), "3:3: " + expected);
    EXPECT_EQ(refused("beep"), "0:4: " + expected);
    EXPECT_EQ(refused("beep~~ now"), "0:6: " + expected);
    EXPECT_EQ(refused("do shell"), "8:8: " + expected);
    EXPECT_EQ(refused("do\nshell script \"x\""), "2:2: " + expected);
    EXPECT_EQ(refused("é do shell script \"x\""), "0:1: " + expected);
}

TEST(Script, refusesAnUnquotedText) {
    const std::string expected = "syntax error: Expected a text in double quotes. (-2741)\n";
    EXPECT_EQ(refused("do shell script"), "15:15: " + expected);
    EXPECT_EQ(refused("do shell script 'x'"), "16:19: " + expected);
}

TEST(Script, refusesATextWithoutAnEnd) {
    const std::string expected =
        "syntax error: Expected the double quote that ends the text. (-2741)\n";
    EXPECT_EQ(refused("do shell script \"x"), "18:18: " + expected);
    EXPECT_EQ(refused("do shell script \"x\\\""), "20:20: " + expected);
}

TEST(Script, refusesAnyOtherEscape) {
    const std::string expected =
        "syntax error: Expected \", \\, n, r or t after the backslash. (-2741)\n";
    EXPECT_EQ(refused("do shell script \"a\\qb\""), "18:21: " + expected);
    EXPECT_EQ(refused("do shell script \"a\\"), "18:19: " + expected);
    EXPECT_EQ(refused("do shell script \"\\u0041\""), "17:23: " + expected);
}

TEST(Script, refusesWhatFollowsTheStatement) {
    EXPECT_EQ(refused("do shell script \"x\" with care"),
              "25:29: syntax error: Expected with administrator privileges or the end of the "
              "script. (-2741)\n");
    EXPECT_EQ(refused("do shell script \"x\"\ndo shell script \"y\""),
              "20:22: syntax error: Expected the end of the script. (-2741)\n");
    EXPECT_EQ(refused("do shell script \"x\" with administrator privileges now"),
              "50:53: syntax error: Expected the end of the script. (-2741)\n");
}

TEST(Arguments, makeOneScriptOfSeveralLines) {
    EXPECT_EQ(scriptFromArguments({"-e", "a"}), "a");
    EXPECT_EQ(scriptFromArguments({"-e", "a", "-e", "", "-e", "-e"}), "a\n\n-e");
}

TEST(Arguments, areRefusedUnlessEachTextFollowsItsOption) {
    EXPECT_EQ(scriptFromArguments({}), std::nullopt);
    EXPECT_EQ(scriptFromArguments({"-e"}), std::nullopt);
    EXPECT_EQ(scriptFromArguments({"a"}), std::nullopt);
    EXPECT_EQ(scriptFromArguments({"-x", "a"}), std::nullopt);
    EXPECT_EQ(scriptFromArguments({"-e", "a", "file"}), std::nullopt);
    EXPECT_EQ(scriptFromArguments({"-e", "a", "--help", "b"}), std::nullopt);
}

}  // namespace
}  // namespace bonkora::runner
