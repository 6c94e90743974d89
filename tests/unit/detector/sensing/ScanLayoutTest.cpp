#include "detector/sensing/ScanLayout.h"

#include <gtest/gtest.h>

namespace bonkora::detector {

namespace {

std::int64_t decoded(const char* type, std::string bytes) {
    const auto element = parseScanElement(type, 0);
    EXPECT_TRUE(element) << type;
    return element ? element->valueIn(bytes.data()) : 0;
}

TEST(ScanLayoutTest, readsBothByteOrders) {
    EXPECT_EQ(decoded("le:s16/16>>0", "\x34\x12"), 0x1234);
    EXPECT_EQ(decoded("be:s16/16>>0", "\x12\x34"), 0x1234);
}

TEST(ScanLayoutTest, extendsTheSignOfWhatCounts) {
    EXPECT_EQ(decoded("le:s12/16>>4", {"\xf0\xff", 2}), -1);
    EXPECT_EQ(decoded("le:s12/16>>4", {"\x00\x80", 2}), -2048);
    EXPECT_EQ(decoded("le:s12/16>>4", {"\x1f\x00", 2}), 1);
    EXPECT_EQ(decoded("be:s14/16>>2", {"\xff\xfc", 2}), -1);
    EXPECT_EQ(decoded("le:s10/16", {"\xff\xff", 2}), -1);
}

TEST(ScanLayoutTest, leavesUnsignedValuesPositive) {
    EXPECT_EQ(decoded("le:u12/16>>4", {"\xf0\xff", 2}), 4095);
    EXPECT_EQ(decoded("le:u8/8>>0", "\xff"), 255);
}

TEST(ScanLayoutTest, readsWideChannels) {
    EXPECT_EQ(decoded("le:s64/64>>0", {"\x01\x02\x03\x04\x05\x06\x07\x08", 8}), 0x0807060504030201);
    EXPECT_EQ(decoded("be:s24/32>>8", {"\xff\xff\xfe\x00", 4}), -2);
}

TEST(ScanLayoutTest, refusesTypesThatCannotBe) {
    for (const char* const type :
         {"", "le", "le:", "le:s", "le:s16", "le:s16/", "le:s16/16>>", "le:s16/16>>0x",
          "xx:s16/16>>0", "le:f32/32>>0", "le:s17/16>>0", "le:s0/16>>0", "le:s12/16>>5",
          "le:s16/24>>0", "le:s16/16X2>>0", "le:s99999999999/16>>0", "le:s16/16>>4294967295"}) {
        EXPECT_FALSE(parseScanElement(type, 0)) << type;
    }
}

TEST(ScanLayoutTest, everyChannelLiesAtAMultipleOfItsSize) {
    auto x = *parseScanElement("le:s16/16>>0", 0);
    auto y = *parseScanElement("le:s16/16>>0", 1);
    auto z = *parseScanElement("le:s16/16>>0", 2);
    auto time = *parseScanElement("le:s64/64>>0", 3);
    EXPECT_EQ(layOut({&time, &z, &x, &y}), 16U);
    EXPECT_EQ(x.offset, 0U);
    EXPECT_EQ(y.offset, 2U);
    EXPECT_EQ(z.offset, 4U);
    EXPECT_EQ(time.offset, 8U);
    EXPECT_EQ(layOut({&x, &y, &z}), 6U);
}

}  // namespace

}  // namespace bonkora::detector
