#include "runner/ErrorLine.h"

#include <gtest/gtest.h>

#include <string>

namespace bonkora::runner {
namespace {

using namespace std::string_literals;

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
