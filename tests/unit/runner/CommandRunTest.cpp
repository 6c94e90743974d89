#include "runner/CommandRun.h"

#include <gtest/gtest.h>

#include <string>

namespace bonkora::runner {
namespace {

TEST(OutputTail, keepsAShortOutputWhole) {
    OutputTail tail;
    EXPECT_EQ(tail.text(), "");
    tail.append("ab");
    tail.append("");
    tail.append("c");
    EXPECT_EQ(tail.text(), "abc");
}

TEST(OutputTail, keepsTheLastBytesOfALongOne) {
    OutputTail tail;
    tail.append(std::string(OutputTail::limit, 'a'));
    tail.append("bc");
    EXPECT_EQ(tail.text(), std::string(OutputTail::limit - 2, 'a').append("bc"));
    tail.append(std::string(10 * OutputTail::limit, 'd').append("e"));
    EXPECT_EQ(tail.text(), std::string(OutputTail::limit - 1, 'd').append("e"));
}

}  // namespace
}  // namespace bonkora::runner
