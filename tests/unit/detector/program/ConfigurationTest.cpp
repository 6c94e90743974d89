#include "detector/program/Configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bonkora::detector {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ConfigurationTest, anEmptyFileChangesNothing) {
    const auto configuration = parseConfiguration("");
    EXPECT_EQ(configuration.sensor, "auto");
    EXPECT_EQ(configuration.device, "");
    EXPECT_EQ(configuration.soundsFolder, "");
    EXPECT_FALSE(configuration.mute);
    EXPECT_THAT(configuration.complaints, IsEmpty());
}

TEST(ConfigurationTest, readsEveryKeyAroundBlanksAndComments) {
    const auto configuration = parseConfiguration(
        "# what I like\n\n  sensor=file:/my recordings/a = b.wav  \r\n"
        "device\t=\tiio:device1\nsounds = /my sounds\nmute = yes");
    EXPECT_EQ(configuration.sensor, "file:/my recordings/a = b.wav");
    EXPECT_EQ(configuration.device, "iio:device1");
    EXPECT_EQ(configuration.soundsFolder, "/my sounds");
    EXPECT_TRUE(configuration.mute);
    EXPECT_THAT(configuration.complaints, IsEmpty());
}

TEST(ConfigurationTest, theLastOfTwoEqualKeysCounts) {
    EXPECT_EQ(parseConfiguration("sensor = auto\nsensor = microphone\n").sensor, "microphone");
}

TEST(ConfigurationTest, aBadLineIsNamedAndTheGoodOnesCount) {
    const auto configuration = parseConfiguration(
        "sensor = microfone\nmute = perhaps\nvolume = 3\njust words\nsensor = accelerometer\n");
    EXPECT_EQ(configuration.sensor, "accelerometer");
    EXPECT_FALSE(configuration.mute);
    EXPECT_THAT(configuration.complaints,
                ElementsAre("line 1: sensor is auto, accelerometer, microphone or file:PATH",
                            "line 2: mute is yes or no",
                            "line 3: unknown key; known are sensor, device, sounds and mute",
                            "line 4: no \"=\" after the key"));
}

TEST(ConfigurationTest, whatIsNoTextIsRefusedAsAWhole) {
    for (const std::string& bytes : {std::string("mute = yes\n\0", 12), std::string("\xff\xfe")}) {
        const auto configuration = parseConfiguration(bytes);
        EXPECT_FALSE(configuration.mute);
        EXPECT_THAT(configuration.complaints, ElementsAre("it is not a text file"));
    }
}

}  // namespace

}  // namespace bonkora::detector
