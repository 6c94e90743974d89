#include "detector/program/Options.h"

#include <gtest/gtest.h>

namespace bonkora::detector {

namespace {

using namespace std::chrono_literals;

Options parsed(const std::vector<std::string>& arguments) {
    const auto result = parseOptions(arguments);
    EXPECT_TRUE(result) << result.error();
    return result.value_or(Options{});
}

std::string refused(const std::vector<std::string>& arguments) {
    const auto result = parseOptions(arguments);
    return result ? "accepted" : result.error();
}

TEST(OptionsTest, takesTheApplicationsLongestCommandLine) {
    const auto options = parsed({"--stdio", "--cooldown", "1200", "--min-amplitude", "0.125",
                                 "--custom", "/home/me/My Sounds", "--volume-scaling", "--fast"});
    EXPECT_TRUE(options.stdio);
    EXPECT_EQ(options.cooldown, 1200ms);
    EXPECT_EQ(options.minAmplitude, 0.125);
    EXPECT_EQ(options.soundSet, SoundSet::custom);
    EXPECT_EQ(options.customFolder, "/home/me/My Sounds");
    EXPECT_TRUE(options.volumeScaling);
    EXPECT_TRUE(options.fast);
}

TEST(OptionsTest, withoutAModeHurts) {
    const auto options = parsed({"--stdio", "--cooldown", "750", "--min-amplitude", "0.050"});
    EXPECT_EQ(options.soundSet, SoundSet::pain);
    EXPECT_FALSE(options.volumeScaling);
    EXPECT_FALSE(options.fast);
}

TEST(OptionsTest, aValueMayLookLikeAnOption) {
    EXPECT_EQ(parsed({"--custom", "--halo"}).customFolder, "--halo");
}

TEST(OptionsTest, acceptsEveryCooldownFromNothingToAnHour) {
    EXPECT_EQ(parsed({"--cooldown", "0"}).cooldown, 0ms);
    EXPECT_EQ(parsed({"--cooldown", "3600000"}).cooldown, 1h);
}

TEST(OptionsTest, refusesCooldownsThatAreNoneOrOutOfRange) {
    for (const char* const text : {"-1", "3600001", "9223372036854775807", "99999999999999999999",
                                   "", " 5", "5 ", "7.5", "+5", "0x10", "many"}) {
        EXPECT_EQ(refused({"--cooldown", text}),
                  "--cooldown takes whole milliseconds from 0 to 3600000")
            << text;
    }
}

TEST(OptionsTest, refusesAmplitudesThatAreNoneOrOutOfRange) {
    for (const char* const text :
         {"-0.001", "100.001", "nan", "inf", "-inf", "1e999", "", "0,5", "0x1p3", "loud"}) {
        EXPECT_EQ(refused({"--min-amplitude", text}),
                  "--min-amplitude takes a number from 0 to 100")
            << text;
    }
    EXPECT_EQ(parsed({"--min-amplitude", "0.000"}).minAmplitude, 0.0);
    EXPECT_EQ(parsed({"--min-amplitude", "100.000"}).minAmplitude, 100.0);
}

TEST(OptionsTest, refusesAnOptionWithoutItsValue) {
    EXPECT_EQ(refused({"--stdio", "--cooldown"}), "--cooldown needs a number");
    EXPECT_EQ(refused({"--min-amplitude"}), "--min-amplitude needs a number");
    EXPECT_EQ(refused({"--custom"}), "--custom needs a folder");
    EXPECT_EQ(refused({"--sensor"}), "--sensor needs a choice");
}

TEST(OptionsTest, refusesWhatItDoesNotKnow) {
    for (const char* const text : {"--loud", "stdio", "-h", "", "--cooldown=5", "--STDIO"}) {
        EXPECT_EQ(refused({text}), "there is an unknown option") << text;
    }
}

TEST(OptionsTest, refusesTwoModes) {
    EXPECT_EQ(refused({"--sexy", "--halo"}), "--sexy, --halo and --custom exclude each other");
    EXPECT_EQ(refused({"--halo", "--custom", "/x"}),
              "--sexy, --halo and --custom exclude each other");
}

TEST(OptionsTest, takesFourKindsOfSensor) {
    for (const char* const text : {"auto", "accelerometer", "microphone", "file:/x y.wav"}) {
        EXPECT_EQ(parsed({"--sensor", text}).sensor, text);
    }
    for (const char* const text : {"", "file:", "Auto", "camera"}) {
        EXPECT_EQ(refused({"--sensor", text}),
                  "--sensor takes auto, accelerometer, microphone or file:PATH");
    }
}

TEST(OptionsTest, aRefusalNeverRepeatsWhatTheUserWrote) {
    EXPECT_EQ(refused({"--slap"}).find("slap"), std::string::npos);
}

}  // namespace

}  // namespace bonkora::detector
