#include "bridge/DetectorSettings.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace bonkora {
namespace {

TEST(Mode, isMadeFromItsExactName) {
    EXPECT_EQ(modeFromRawValue("halo"), Mode::halo);
    EXPECT_EQ(modeFromRawValue("pain"), Mode::pain);
    EXPECT_EQ(modeFromRawValue("sexy"), Mode::sexy);
    EXPECT_EQ(modeFromRawValue("custom"), Mode::custom);
}

TEST(Mode, anyOtherTextGivesNoMode) {
    for (const char* const text : {"Halo", " halo", "halo ", "", "hal", "haloo"}) {
        EXPECT_EQ(modeFromRawValue(text), std::nullopt) << text;
    }
}

TEST(Mode, allCasesStandInTheOrderOfDeclaration) {
    EXPECT_EQ(allCases, (std::array{Mode::pain, Mode::sexy, Mode::halo, Mode::custom}));
}

TEST(Mode, isIdentifiedByItsRawValue) {
    std::unordered_set<Mode> modes(allCases.begin(), allCases.end());
    EXPECT_EQ(modes.size(), 4U);
    for (const Mode mode : allCases) {
        EXPECT_EQ(id(mode), rawValue(mode));
        EXPECT_EQ(modeFromRawValue(rawValue(mode)), mode);
    }
}

using Arguments = std::vector<std::string>;

TEST(CommandLine, haloWithVolumeScalingGivesSevenElements) {
    EXPECT_EQ(detectorArguments({.mode = Mode::halo}),
              (Arguments{"--stdio", "--cooldown", "750", "--min-amplitude", "0.050", "--halo",
                         "--volume-scaling"}));
}

TEST(CommandLine, customWithAFolderAndFastModeGivesEightElements) {
    EXPECT_EQ(detectorArguments({.mode = Mode::custom,
                                 .volumeScaling = false,
                                 .fastMode = true,
                                 .customSoundPath = "/Users/me/Sounds"}),
              (Arguments{"--stdio", "--cooldown", "750", "--min-amplitude", "0.050", "--custom",
                         "/Users/me/Sounds", "--fast"}));
}

TEST(CommandLine, withEverySwitchOffAndPainOnlyTheFiveConstantElementsStand) {
    EXPECT_EQ(detectorArguments({.volumeScaling = false}),
              (Arguments{"--stdio", "--cooldown", "750", "--min-amplitude", "0.050"}));
}

TEST(CommandLine, customWithoutAFolderIsExactlyLikePain) {
    EXPECT_EQ(detectorArguments({.mode = Mode::custom}), detectorArguments({.mode = Mode::pain}));
}

TEST(CommandLine, painIgnoresTheFolder) {
    EXPECT_EQ(detectorArguments({.mode = Mode::pain, .customSoundPath = "/x"}),
              detectorArguments({.mode = Mode::pain}));
}

TEST(CommandLine, aFolderIsOneElementExactlyAsStored) {
    for (const char* const folder : {"/a folder/with blanks", " ", "~/Music", "--fast", "\"'$"}) {
        const auto arguments = detectorArguments({.mode = Mode::custom, .customSoundPath = folder});
        ASSERT_EQ(arguments.size(), 8U);
        EXPECT_EQ(arguments[6], folder);
    }
}

TEST(CommandLine, sexyHasAnOptionOfItsOwn) {
    EXPECT_EQ(detectorArguments({.mode = Mode::sexy, .volumeScaling = false}).back(), "--sexy");
}

TEST(CommandLine, theMinimumAmplitudeHasThreeDecimalsToTheNearest) {
    EXPECT_EQ(detectorArguments({.minAmplitude = 0.1})[4], "0.100");
    EXPECT_EQ(detectorArguments({.minAmplitude = 0.1234})[4], "0.123");
    EXPECT_EQ(detectorArguments({.minAmplitude = 0.0126})[4], "0.013");
}

TEST(CommandLine, theCooldownIsNeitherCorrectedNorGrouped) {
    EXPECT_EQ(detectorArguments({.cooldownMs = 0})[2], "0");
    EXPECT_EQ(detectorArguments({.cooldownMs = -250})[2], "-250");
    EXPECT_EQ(detectorArguments({.cooldownMs = 1234567})[2], "1234567");
}

TEST(CommandLine, volumeScalingComesBeforeFastAndBothAfterTheMode) {
    const auto arguments = detectorArguments({.mode = Mode::sexy, .fastMode = true});
    EXPECT_EQ(Arguments(arguments.begin() + 5, arguments.end()),
              (Arguments{"--sexy", "--volume-scaling", "--fast"}));
}

}  // namespace
}  // namespace bonkora
