#include "platform/JsonReader.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/CommaLocale.h"

namespace bonkora::platform {
namespace {

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(JsonReader, readsTheTopLevelOfAnObject) {
    const auto object =
        readJsonObject(R"( {"text":"a\u00e9\n","n":-1.5e2,"i":7,"t":true,"z":null,"o":{"x":1}} )");
    ASSERT_TRUE(object);
    EXPECT_EQ(std::get<std::string>(object->at("text")), "aé\n");
    EXPECT_EQ(std::get<double>(object->at("n")), -150.0);
    EXPECT_EQ(std::get<double>(object->at("i")), 7.0);
    EXPECT_EQ(std::get<bool>(object->at("t")), true);
    EXPECT_TRUE(std::holds_alternative<JsonNull>(object->at("z")));
    EXPECT_TRUE(std::holds_alternative<JsonNested>(object->at("o")));
    EXPECT_EQ(object->size(), 6U);
}

TEST(JsonReader, keysOfNestedObjectsDoNotCount) {
    const auto object = readJsonObject(R"({"data":{"type":"slap"},"list":[{"type":"hit"}],"n":1})");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->count("type"), 0U);
    EXPECT_EQ(std::get<double>(object->at("n")), 1.0);
}

TEST(JsonReader, ofTwoEqualKeysTheFirstCounts) {
    const auto object = readJsonObject(R"({"a":[],"a":"second","b":1,"b":2})");
    ASSERT_TRUE(object);
    EXPECT_TRUE(std::holds_alternative<JsonNested>(object->at("a")));
    EXPECT_EQ(std::get<double>(object->at("b")), 1.0);
}

TEST(JsonReader, refusesWhateverIsNoObject) {
    for (const char* const text : {"",
                                   " ",
                                   "[]",
                                   "[{\"type\":\"slap\"}]",
                                   "1",
                                   "\"text\"",
                                   "true",
                                   "null",
                                   "slap",
                                   "{",
                                   "}",
                                   "{\"a\":1",
                                   "{\"a\":}",
                                   "{\"a\" 1}",
                                   "{a:1}",
                                   "{'a':1}",
                                   "{\"a\":1}}",
                                   "{\"a\":1} x",
                                   "{\"a\":01}",
                                   "{\"a\":NaN}",
                                   "{\"a\":Infinity}",
                                   "{\"a\":+1}",
                                   "{\"a\":.5}",
                                   "{\"a\":1.}",
                                   "{\"a\":\"\t\"}",
                                   "{\"a\":\"\\x\"}",
                                   "{\"a\":\"\\ud800\"}",
                                   "{\"a\":\"\\udc00x\"}",
                                   "{\"a\":1e999}",
                                   "{}{}",
                                   "{\"a\":tru}",
                                   "{1:2}",
                                   "\xC2\xA0{}"}) {
        EXPECT_FALSE(readJsonObject(text)) << text;
    }
}

TEST(JsonReader, aNulByteMakesItPlainText) {
    EXPECT_FALSE(readJsonObject(std::string_view("{\"a\":1}\0", 8)));
    EXPECT_FALSE(readJsonObject(std::string_view("{\"a\":1\0}", 8)));
    EXPECT_FALSE(readJsonObject(std::string_view("{\"a\":\"\0\"}", 9)));
}

TEST(JsonReader, skipsOneByteOrderMarkBeforeTheObject) {
    EXPECT_TRUE(readJsonObject("\xEF\xBB\xBF{\"a\":1}"));
    EXPECT_FALSE(readJsonObject("\xEF\xBB\xBF\xEF\xBB\xBF{\"a\":1}"));
}

TEST(JsonReader, readsToADepthOf512AndNoDeeper) {
    EXPECT_TRUE(readJsonObject("{\"a\":" + repeated("[", 511) + repeated("]", 511) + "}"));
    EXPECT_FALSE(readJsonObject("{\"a\":" + repeated("[", 512) + repeated("]", 512) + "}"));
}

TEST(JsonReader, aMillionNestedBracketsAreRefused) {
    EXPECT_FALSE(readJsonObject(repeated("[", 1'000'000)));
    EXPECT_FALSE(readJsonObject(repeated("{\"a\":", 1'000'000)));
}

TEST(JsonReader, aNumberTooLargeForAnIntegerIsADouble) {
    const auto object = readJsonObject(R"({"a":123456789012345678901234567890})");
    ASSERT_TRUE(object);
    EXPECT_DOUBLE_EQ(std::get<double>(object->at("a")), 1.2345678901234568e29);
}

TEST(JsonReader, aNumberIsReadTheSameInALocaleWithAComma) {
    const test::CommaLocale locale;
    const auto object = readJsonObject(R"({"point":1.5,"exponent":25e-2})");
    ASSERT_TRUE(object);
    EXPECT_EQ(std::get<double>(object->at("point")), 1.5);
    EXPECT_EQ(std::get<double>(object->at("exponent")), 0.25);
    EXPECT_FALSE(readJsonObject(R"({"point":1,5})"));
}

}  // namespace
}  // namespace bonkora::platform
