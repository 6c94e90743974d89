#include <gtest/gtest.h>

#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class Stop : public testing::Test {
  protected:
    void run() {
        wrapper->start();
        system.console->take();
    }
    test::FakeProcess& runner(std::size_t number) const { return *system.processes->made[number]; }
    std::size_t launches() const { return system.processes->made.size(); }

    test::TestPlatform system;
    std::shared_ptr<SpankWrapper> wrapper = system.makeController();
};

class Restart : public Stop {};
class SwitchMode : public Stop {};

TEST_F(Stop, whileStoppedPrintsNothingAndChangesNothing) {
    int announcements = 0;
    const auto subscription = wrapper->objectWillChange.sink([&] { ++announcements; });
    wrapper->stop();
    EXPECT_EQ(system.time->pending(), 0U);
    EXPECT_EQ(announcements, 0);
    EXPECT_TRUE(system.console->take().empty());
}

TEST_F(Stop, leavesEverythingRunningForHalfASecond) {
    run();
    wrapper->stop();
    system.time->advance(499ms);
    EXPECT_TRUE(wrapper->isRunning);
    EXPECT_EQ(wrapper->statusMessage, "Listening for slaps...");
    EXPECT_EQ(runner(0).terminations, 0);
    EXPECT_TRUE(system.console->take().empty());
}

TEST_F(Stop, thenAsksTheRunnerToEndAndLetsItGo) {
    run();
    wrapper->stop();
    system.time->advance(500ms);
    EXPECT_EQ(runner(0).terminations, 1);
    EXPECT_EQ(system.processes->made[0].use_count(), 1);
    EXPECT_FALSE(wrapper->isRunning);
    EXPECT_EQ(wrapper->statusMessage, "Stopped");
    EXPECT_EQ(system.console->take(), Lines{"⏹ Spank stopped"});
}

TEST_F(Stop, theRunnersOwnReportHasTheLastWord) {
    run();
    wrapper->stop();
    system.time->advance(500ms);
    runner(0).end(15);
    system.time->runDue();
    EXPECT_EQ(wrapper->statusMessage, "Error (code: 15)");
}

TEST_F(Stop, ofADetectorThatEndsMeanwhileStillTakesItsStep) {
    run();
    wrapper->stop();
    runner(0).end(3);
    system.time->advance(500ms);
    EXPECT_EQ(wrapper->statusMessage, "Stopped");
    EXPECT_EQ(system.console->take(),
              (Lines{"⏹ Spank process ended with code: 3", "⏹ Spank stopped"}));
}

TEST_F(Stop, twiceTakesTheStepTwice) {
    run();
    wrapper->stop();
    wrapper->stop();
    system.time->advance(500ms);
    EXPECT_EQ(runner(0).terminations, 1);
    EXPECT_EQ(system.console->take(), (Lines{"⏹ Spank stopped", "⏹ Spank stopped"}));
}

TEST_F(Stop, withoutAControllerStillSaysSoAndTerminatesNothing) {
    run();
    wrapper->stop();
    wrapper.reset();
    system.time->advance(500ms);
    EXPECT_EQ(runner(0).terminations, 0);
    EXPECT_EQ(system.console->take(), Lines{"⏹ Spank stopped"});
}

TEST_F(Stop, anObserverMayLetTheControllerGoInTheMiddle) {
    run();
    wrapper->stop();
    const auto subscription = wrapper->objectWillChange.sink([&] { wrapper.reset(); });
    system.time->advance(500ms);
    EXPECT_EQ(runner(0).terminations, 1);
    EXPECT_EQ(system.console->take(), Lines{"⏹ Spank stopped"});
}

TEST_F(Restart, startsOneSecondAfterTheCallAndHalfASecondAfterTheRequestToEnd) {
    run();
    wrapper->restart();
    system.time->advance(500ms);
    EXPECT_EQ(runner(0).terminations, 1);
    runner(0).end(0);
    system.time->advance(499ms);
    EXPECT_EQ(launches(), 1U);
    system.time->advance(1ms);
    EXPECT_EQ(launches(), 2U);
    EXPECT_TRUE(wrapper->isRunning);
}

TEST_F(Restart, whileStoppedStartsAfterOneSecondAllTheSame) {
    wrapper->restart();
    system.time->advance(999ms);
    EXPECT_EQ(launches(), 0U);
    system.time->advance(1ms);
    EXPECT_EQ(launches(), 1U);
    EXPECT_EQ(system.console->take().front(), "🔧 Found spank at: " + system.detector);
}

TEST_F(Restart, usesTheSettingsAsTheyAreAtTheNewStart) {
    run();
    wrapper->restart();
    system.time->advance(700ms);
    wrapper->cooldownMs = 1200;
    system.time->advance(300ms);
    EXPECT_NE(runner(1).arguments[1].find("\\\"1200\\\""), std::string::npos);
}

TEST_F(Restart, twoQuickOnesStartOnceProvidedTheFirstLaunchSucceeds) {
    run();
    wrapper->restart();
    system.time->advance(100ms);
    wrapper->restart();
    system.time->advance(500ms);  // the second stop finds nothing left to end
    EXPECT_EQ(runner(0).terminations, 1);
    system.time->advance(2s);
    EXPECT_EQ(launches(), 2U);
    EXPECT_TRUE(wrapper->isRunning);
}

TEST_F(Restart, theSecondOfTwoTriesAgainWhenTheFirstLaunchFailed) {
    run();
    wrapper->restart();
    system.time->advance(100ms);
    wrapper->restart();
    system.processes->nextFailure = platform::LaunchError{"NSCocoaErrorDomain", 4, "/x"};
    system.time->advance(2s);
    EXPECT_EQ(launches(), 3U);
    EXPECT_TRUE(wrapper->isRunning);
}

TEST_F(Restart, aLateReportOfTheOldRunnerMarksTheNewOneStopped) {
    run();
    wrapper->restart();
    system.time->advance(1s);
    EXPECT_TRUE(wrapper->isRunning);
    runner(0).end(15);
    system.time->runDue();
    EXPECT_FALSE(wrapper->isRunning);
    EXPECT_EQ(wrapper->statusMessage, "Error (code: 15)");
    EXPECT_EQ(runner(1).terminations, 0);
    EXPECT_TRUE(runner(1).isRunning());
}

TEST_F(Restart, ofAControllerThatIsGoneStartsNothing) {
    run();
    wrapper->restart();
    wrapper.reset();
    system.time->advance(1s);
    EXPECT_EQ(launches(), 1U);
}

TEST_F(Restart, aStartThatIsPendingIsNotCancelledByAStop) {
    run();
    wrapper->restart();
    system.time->advance(600ms);
    wrapper->stop();  // not running any more: nothing happens
    system.time->advance(400ms);
    EXPECT_EQ(launches(), 2U);
    EXPECT_TRUE(wrapper->isRunning);
}

TEST_F(SwitchMode, whileStoppedSetsTheModeAndStartsNothing) {
    wrapper->switchMode(Mode::halo);
    EXPECT_EQ(wrapper->currentMode, Mode::halo);
    EXPECT_EQ(system.time->pending(), 0U);
    wrapper->start();
    EXPECT_NE(runner(0).arguments[1].find("--halo"), std::string::npos);
}

TEST_F(SwitchMode, whileRunningSetsTheModeAtOnceAndRestarts) {
    run();
    wrapper->switchMode(Mode::halo);
    EXPECT_EQ(wrapper->currentMode, Mode::halo);
    EXPECT_TRUE(wrapper->isRunning);
    system.time->advance(500ms);
    EXPECT_EQ(runner(0).terminations, 1);
    system.time->advance(499ms);
    EXPECT_EQ(launches(), 1U);
    system.time->advance(1ms);
    ASSERT_EQ(launches(), 2U);
    EXPECT_NE(runner(1).arguments[1].find("--halo"), std::string::npos);
}

TEST_F(SwitchMode, toTheCurrentModeRestartsAllTheSame) {
    run();
    wrapper->switchMode(Mode::pain);
    system.time->advance(1s);
    EXPECT_EQ(runner(0).terminations, 1);
    EXPECT_EQ(launches(), 2U);
}

TEST_F(SwitchMode, announcesTheModeEvenIfItIsTheSame) {
    int announcements = 0;
    const auto subscription = wrapper->objectWillChange.sink([&] { ++announcements; });
    wrapper->switchMode(Mode::pain);
    EXPECT_EQ(announcements, 1);
}

TEST_F(Stop, anApplicationThatEndsSoonerNeverSendsTheRequest) {
    run();
    wrapper->stop();
    system.time->advance(300ms);  // the pause before the application ends
    EXPECT_EQ(runner(0).terminations, 0);
    EXPECT_TRUE(runner(0).isRunning());
}

}  // namespace
}  // namespace bonkora
