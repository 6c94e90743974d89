#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class Start : public testing::Test {
  protected:
    test::TestPlatform system;
    std::shared_ptr<SpankWrapper> wrapper = system.makeController();
};

TEST_F(Start, hasTheRunnerRunTheDetectorAsAdministrator) {
    wrapper->start();
    ASSERT_EQ(system.processes->made.size(), 1U);
    const auto& runner = system.processes->last();
    EXPECT_EQ(runner.executablePath, "/usr/bin/osascript");
    EXPECT_EQ(runner.arguments,
              (Lines{"-e", "do shell script \"\\\"" + system.detector +
                               "\\\" \\\"--stdio\\\" \\\"--cooldown\\\" \\\"750\\\" "
                               "\\\"--min-amplitude\\\" \\\"0.050\\\" \\\"--volume-scaling\\\"\" "
                               "with administrator privileges"}));
}

TEST_F(Start, readsTheSettingsAsTheyAreAtThatMoment) {
    wrapper->currentMode = Mode::custom;
    wrapper->customSoundPath = "/my sounds";
    wrapper->cooldownMs = -5;
    wrapper->minAmplitude = 0.1234;
    wrapper->volumeScaling = false;
    wrapper->fastMode = true;
    wrapper->start();
    EXPECT_NE(system.processes->last().arguments[1].find(
                  "\\\"--cooldown\\\" \\\"-5\\\" \\\"--min-amplitude\\\" \\\"0.123\\\" "
                  "\\\"--custom\\\" \\\"/my sounds\\\" \\\"--fast\\\"\" with"),
              std::string::npos);
}

TEST_F(Start, tellsItsProgressInOrder) {
    Lines statuses;
    const auto subscription = wrapper->objectWillChange.sink([&] {
        statuses.push_back(wrapper->statusMessage.get() + (wrapper->isRunning ? " (running)" : ""));
    });
    wrapper->start();
    // Each is the state before an assignment: of the status, of isRunning, of the status.
    EXPECT_EQ(statuses, (Lines{"Ready", "Requesting admin access...",
                               "Requesting admin access... (running)"}));
    EXPECT_TRUE(wrapper->isRunning);
    EXPECT_EQ(wrapper->statusMessage, "Listening for slaps...");
    EXPECT_EQ(system.console->take(), (Lines{"🔧 Found spank at: " + system.detector,
                                             "✅ Spank launched with sudo (PID: 100)"}));
}

TEST_F(Start, aSecondOneWhileRunningDoesNothingAtAll) {
    wrapper->start();
    system.console->take();
    int announcements = 0;
    const auto subscription = wrapper->objectWillChange.sink([&] { ++announcements; });
    const auto pending = system.time->pending();
    wrapper->start();
    EXPECT_EQ(announcements, 0);
    EXPECT_EQ(system.processes->made.size(), 1U);
    EXPECT_EQ(system.time->pending(), pending);
    EXPECT_TRUE(system.console->take().empty());
}

TEST_F(Start, withoutADetectorSaysSoAndStaysStopped) {
    std::filesystem::remove(system.detector);
    wrapper->start();
    EXPECT_EQ(wrapper->statusMessage, "spank binary not found!");
    EXPECT_FALSE(wrapper->isRunning);
    EXPECT_EQ(system.console->take(), Lines{"❌ Could not find spank binary"});
    EXPECT_TRUE(system.processes->made.empty());
    EXPECT_EQ(system.time->pending(), 0U);
}

TEST_F(Start, mayBeTriedAgainAtOnceAfterAFailedLaunch) {
    system.processes->nextFailure = platform::LaunchError{"NSCocoaErrorDomain", 4, "/x/osascript"};
    wrapper->start();
    EXPECT_FALSE(wrapper->isRunning);
    wrapper->start();
    EXPECT_TRUE(wrapper->isRunning);
    EXPECT_EQ(wrapper->statusMessage, "Listening for slaps...");
}

}  // namespace
}  // namespace bonkora
