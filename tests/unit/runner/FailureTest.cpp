#include "runner/Failure.h"

#include <gtest/gtest.h>

#include <string>

namespace bonkora::runner {
namespace {

using namespace std::string_literals;

HelperReport ended(int status, std::string errorOutput = "") {
    return {true, true, status, status, std::move(errorOutput)};
}

HelperReport notStarted(bool throughPolkit, int helperStatus, std::string errorOutput = "") {
    return {throughPolkit, false, std::nullopt, helperStatus, std::move(errorOutput)};
}

TEST(HelperReport, ofStatusZeroIsNoFailureWhateverWasWritten) {
    EXPECT_EQ(failureFrom(ended(0, "careful\n")), std::nullopt);
}

TEST(HelperReport, takesTheCommandsErrorOutputForTheMessage) {
    EXPECT_EQ(failureFrom(ended(4, "boom\n")), (Failure{"boom", 4}));
    EXPECT_EQ(failureFrom(ended(3)), (Failure{"The command exited with a non-zero status.", 3}));
}

TEST(HelperReport, tellsADismissedPromptFromACommandOfThatStatus) {
    EXPECT_EQ(failureFrom(notStarted(true, 126, "pkexec says so\n")),
              (Failure{"User canceled.", -128}));
    EXPECT_EQ(failureFrom(ended(126, "boom\n")), (Failure{"boom", 126}));
}

TEST(HelperReport, tellsARefusalFromACommandOfThatStatus) {
    EXPECT_EQ(failureFrom(notStarted(true, 127, "No agent.\n")),
              (Failure{"Administrator rights were refused. No agent.", -60005}));
    EXPECT_EQ(failureFrom(notStarted(true, 127)),
              (Failure{"Administrator rights were refused.", -60005}));
    EXPECT_EQ(failureFrom(ended(127, "sh: nothing\n")), (Failure{"sh: nothing", 127}));
}

TEST(HelperReport, knowsNoPromptWherePolkitWasNotAsked) {
    EXPECT_EQ(failureFrom(notStarted(false, 126)),
              (Failure{"The command could not be started.", 126}));
    EXPECT_EQ(failureFrom(notStarted(false, 1, "No room.\n")), (Failure{"No room.", 1}));
}

TEST(HelperReport, saysThatTheSupervisorWasKilled) {
    EXPECT_EQ(failureFrom({true, true, std::nullopt, 137, "half a line"}),
              (Failure{"The command was ended together with its supervisor.", 137}));
}

TEST(ErrorLine, namesRangeKindMessageAndNumber) {
    EXPECT_EQ(executionErrorLine({0, 39}, {"boom", 4}), "0:39: execution error: boom (4)\n");
    EXPECT_EQ(syntaxErrorLine({{12, 18}, "No."}), "12:18: syntax error: No. (-2741)\n");
}

TEST(ErrorMessage, losesTheLineFeedsAtItsEnd) {
    EXPECT_EQ(messageFromErrorOutput("boom\n"), "boom");
    EXPECT_EQ(messageFromErrorOutput("boom\r\n\n"), "boom");
    EXPECT_EQ(messageFromErrorOutput("\n\n"), "");
}

TEST(ErrorMessage, staysOnOneLine) {
    EXPECT_EQ(messageFromErrorOutput("a\nb\tc\0d\x1B[31m\x7F"s), "a b\tc d [31m ");
}

TEST(ErrorMessage, losesACharacterWithoutItsBeginning) {
    EXPECT_EQ(messageFromErrorOutput("\x9F\x91\x8B é"), " é");
}

TEST(ErrorMessage, isAlwaysWellFormed) {
    EXPECT_EQ(messageFromErrorOutput("é \xFF"), "?? ?");
    EXPECT_EQ(messageFromErrorOutput("\x91\x91\x91\x91"), "?");
}

}  // namespace
}  // namespace bonkora::runner
