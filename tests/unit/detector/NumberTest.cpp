#include "detector/Number.h"

#include <gtest/gtest.h>

#include <string>

namespace bonkora::detector {
namespace {

TEST(Number, decimalsReadAsTheNearestDouble) {
    EXPECT_EQ(parseNumber<double>("0.05"), 0.05);
    EXPECT_EQ(parseNumber<double>("-12.5"), -12.5);
    EXPECT_EQ(parseNumber<double>("007"), 7.0);
    EXPECT_EQ(parseNumber<double>(".5"), 0.5);
    EXPECT_EQ(parseNumber<double>("5."), 5.0);
    EXPECT_EQ(parseNumber<double>("1e-3"), 0.001);
    EXPECT_EQ(parseNumber<double>("2E+2"), 200.0);
    EXPECT_EQ(parseNumber<double>("0.1000000000000000055511151231257827"), 0.1);
    EXPECT_EQ(parseNumber<double>("9007199254740993"), 9007199254740992.0);
}

TEST(Number, whateverIsNotWhollyAFiniteDecimalIsNone) {
    for (const std::string text :
         {"",    " ",   "+1",    " 1",   "1 ",  "1,5",  "-",   ".",     "e5",       "1e", "1e+",
          "--1", "1-1", "1.2.3", "0x10", "inf", "-inf", "nan", "1e999", "infinity", "1f", "one"}) {
        EXPECT_EQ(parseNumber<double>(text), std::nullopt) << "\"" << text << "\"";
    }
    EXPECT_EQ(parseNumber<double>(std::string_view{"1\0", 2}), std::nullopt);
}

}  // namespace
}  // namespace bonkora::detector
