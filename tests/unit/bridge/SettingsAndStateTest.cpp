#include <gtest/gtest.h>

#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;

class SettingsAndState : public testing::Test {
  protected:
    void expectInitialValues() const {
        EXPECT_FALSE(wrapper->isRunning);
        EXPECT_EQ(wrapper->currentMode, Mode::pain);
        EXPECT_EQ(wrapper->slapCount, 0);
        EXPECT_EQ(wrapper->lastAmplitude, 0.0);
        EXPECT_EQ(wrapper->statusMessage, "Ready");
        EXPECT_TRUE(wrapper->volumeScaling);
        EXPECT_FALSE(wrapper->fastMode);
        EXPECT_EQ(wrapper->cooldownMs, 750);
        EXPECT_EQ(wrapper->minAmplitude, 0.05);
        EXPECT_EQ(wrapper->customSoundPath, "");
    }

    test::TestPlatform system;
    std::shared_ptr<SpankWrapper> wrapper = system.makeController();
};

TEST_F(SettingsAndState, aNewControllerHasItsInitialValues) {
    expectInitialValues();
}

TEST_F(SettingsAndState, aNewControllerHasStartedNothing) {
    EXPECT_TRUE(system.processes->made.empty());
    EXPECT_EQ(system.time->pending(), 0U);
    EXPECT_TRUE(system.console->lines().empty());
}

TEST_F(SettingsAndState, everyPublishedPropertyAnnouncesBeforeItStores) {
    std::vector<std::string> seen;
    const auto subscription = wrapper->objectWillChange.sink([&] {
        seen.push_back(std::to_string(wrapper->cooldownMs) + wrapper->customSoundPath.get());
    });
    wrapper->cooldownMs = 1200;
    wrapper->customSoundPath = "/a";
    wrapper->customSoundPath = "/a";
    wrapper->isRunning = wrapper->isRunning.get();
    wrapper->currentMode = Mode::halo;
    wrapper->slapCount = 1;
    wrapper->lastAmplitude = 0.5;
    wrapper->statusMessage = "x";
    wrapper->volumeScaling = false;
    wrapper->fastMode = true;
    wrapper->minAmplitude = 0.2;
    EXPECT_EQ(seen.size(), 11U);
    EXPECT_EQ((std::vector(seen.begin(), seen.begin() + 4)),
              (std::vector<std::string>{"750", "1200", "1200/a", "1200/a"}));
}

TEST_F(SettingsAndState, assigningASettingDoesNotTouchARunningDetector) {
    wrapper->start();
    int announcements = 0;
    const auto subscription = wrapper->objectWillChange.sink([&] { ++announcements; });
    wrapper->cooldownMs = 1200;
    system.time->advance(10s);
    EXPECT_EQ(wrapper->cooldownMs, 1200);
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(system.processes->made.size(), 1U);
    EXPECT_EQ(system.processes->last().terminations, 0);
    EXPECT_TRUE(wrapper->isRunning);
}

TEST_F(SettingsAndState, countAndAmplitudeOutliveAStopAndANewStart) {
    wrapper->start();
    system.processes->last().print("{\"type\":\"slap\",\"amplitude\":0.5}\n");
    system.time->runDue();
    wrapper->stop();
    system.time->advance(500ms);
    system.processes->last().end(0);
    wrapper->start();
    system.time->advance(1s);
    EXPECT_EQ(wrapper->slapCount, 1);
    EXPECT_EQ(wrapper->lastAmplitude, 0.5);
}

TEST_F(SettingsAndState, aNewControllerKeepsNothingOfAnEarlierOne) {
    wrapper->start();
    wrapper->currentMode = Mode::custom;
    wrapper->cooldownMs = 3000;
    wrapper->minAmplitude = 0.5;
    wrapper->volumeScaling = false;
    wrapper->fastMode = true;
    wrapper->customSoundPath = "/sounds";
    wrapper->slapCount = 7;
    wrapper->lastAmplitude = 1.5;
    wrapper->statusMessage = "Error: no sensor";
    wrapper = system.makeController();
    expectInitialValues();
}

TEST_F(SettingsAndState, destroyingTheControllerTerminatesNothing) {
    wrapper->start();
    wrapper.reset();
    system.time->advance(10s);
    EXPECT_EQ(system.processes->last().terminations, 0);
}

}  // namespace
}  // namespace bonkora
