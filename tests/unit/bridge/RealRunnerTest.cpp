// The controller over real children: scripts in the runner's place, real pipes, real ends.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;

class RealRunner : public testing::Test {
  protected:
    // Starts the controller with a runner that is this shell script.
    void runScript(const std::string& script) {
        runner = system.folder.write("osascript", "#!/bin/sh\n" + script + "\n", true);
        startController();
    }
    void startController() {
        platform::Platform platform = system.value();
        platform.runnerPath = [this] { return runner; };
        platform.makeProcess = platform::makePosixProcess;
        wrapper = SpankWrapper::create(platform);
        wrapper->start();
    }
    bool until(const std::function<bool()>& holds) const { return system.time->runUntil(holds); }
    // Nothing is dealt with meanwhile: what waits for the main thread grows to its bound. In real
    // time, since that another process writes no more is told by no event and by no queue of ours.
    void untilItHasToWait() const {
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        std::size_t before = 0;
        std::size_t now = 0;
        do {
            before = now;
            std::this_thread::sleep_for(100ms);
            now = system.time->pending();
        } while ((now != before || now < 60) && std::chrono::steady_clock::now() < deadline);
        EXPECT_GE(now, 60U);
    }
    bool untilEnded() const {
        return until([&] {
            const auto lines = system.console->lines();
            return !lines.empty() && lines.back().find("ended with code") != std::string::npos;
        });
    }

    test::TestPlatform system;
    std::string runner;
    std::shared_ptr<SpankWrapper> wrapper;
};

TEST_F(RealRunner, itsLinesCountAsTheyCome) {
    runScript(
        "echo '{\"type\":\"ready\"}'; echo '{\"type\":\"slap\",\"amplitude\":0.5}' >&2; "
        "sleep 30");
    EXPECT_TRUE(until([&] { return wrapper->slapCount == 1; }));
    EXPECT_TRUE(wrapper->isRunning);
    wrapper->stop();
    system.time->advance(500ms);
    EXPECT_TRUE(untilEnded());
    EXPECT_EQ(wrapper->statusMessage, "Error (code: 15)");
}

TEST_F(RealRunner, receivesExactlyTheScriptText) {
    runScript("printf '%s\\n' \"$#\" \"$@\"");
    const std::vector<std::string> expected{
        "📋 spank: 2", "📋 spank: -e",
        "📋 spank: do shell script \"\\\"" + system.detector +
            "\\\" \\\"--stdio\\\" \\\"--cooldown\\\" \\\"750\\\" \\\"--min-amplitude\\\" "
            "\\\"0.050\\\" \\\"--volume-scaling\\\"\" with administrator privileges"};
    // The end may be told before the output or after it.
    EXPECT_TRUE(until([&] { return system.console->lines().size() == 6; }));
    auto lines = system.console->lines();
    lines.erase(lines.begin(), lines.begin() + 2);
    std::erase(lines, "⏹ Spank process ended with code: 0");
    EXPECT_EQ(lines, expected);
}

TEST_F(RealRunner, anyStatusIsShown) {
    runScript("exit 42");
    EXPECT_TRUE(untilEnded());
    EXPECT_FALSE(wrapper->isRunning);
    EXPECT_EQ(wrapper->statusMessage, "Error (code: 42)");
}

TEST_F(RealRunner, killedFromOutsideShowsTheSignalsNumber) {
    runScript("kill -KILL $$");
    EXPECT_TRUE(untilEnded());
    EXPECT_EQ(wrapper->statusMessage, "Error (code: 9)");
}

TEST_F(RealRunner, thatClosesItsOutputButLivesOnStaysRunning) {
    runScript("echo 'plain slap'; exec >&- 2>&-; while [ ! -e " + (system.folder / "go") +
              " ]; do sleep 0.01; done");
    EXPECT_TRUE(until([&] { return wrapper->slapCount == 1; }));
    EXPECT_TRUE(wrapper->isRunning);
    system.folder.write("go", "");
    EXPECT_TRUE(untilEnded());
    EXPECT_EQ(wrapper->statusMessage, "Stopped");
}

TEST_F(RealRunner, whoseGrandchildHoldsThePipeIsToldAsEndedAndItsSlapsStillCount) {
    runScript("(while [ ! -e " + (system.folder / "go") +
              " ]; do sleep 0.01; done; echo 'late slap') & exit 0");
    EXPECT_TRUE(untilEnded());
    EXPECT_FALSE(wrapper->isRunning);
    system.folder.write("go", "");
    EXPECT_TRUE(until([&] { return wrapper->slapCount == 1; }));
}

TEST_F(RealRunner, aMissingOneIsReported) {
    runner = system.folder / "osascript";
    startController();
    EXPECT_EQ(wrapper->statusMessage, "Failed to launch: The file “osascript” doesn’t exist.");
}

TEST_F(RealRunner, oneThatIsNotExecutableIsReportedAsMissing) {
    runner = system.folder.write("osascript", "#!/bin/sh\n");
    startController();
    EXPECT_EQ(wrapper->statusMessage, "Failed to launch: The file “osascript” doesn’t exist.");
}

TEST_F(RealRunner, aFolderInItsPlaceIsReported) {
    runner = system.folder.makeFolder("osascript");
    startController();
    EXPECT_EQ(wrapper->statusMessage,
              "Failed to launch: The operation couldn’t be completed. Permission denied");
}

TEST_F(RealRunner, atTheDescriptorLimitTheLaunchFailsAndALaterOneWorks) {
    runner = "/bin/true";
    startController();
    ASSERT_TRUE(untilEnded());
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    rlimit lower = limit;
    lower.rlim_cur = 64;
    ::setrlimit(RLIMIT_NOFILE, &lower);
    std::vector<platform::UniqueDescriptor> taken;
    for (int descriptor = ::dup(0); descriptor >= 0; descriptor = ::dup(0)) {
        taken.emplace_back(descriptor);
    }
    wrapper->start();
    const std::string status = wrapper->statusMessage;
    taken.clear();
    ::setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(status, "Failed to launch: The operation couldn’t be completed. Too many open files");
    EXPECT_FALSE(wrapper->isRunning);

    wrapper->start();
    EXPECT_TRUE(wrapper->isRunning);
    EXPECT_TRUE(untilEnded());
}

TEST_F(RealRunner, livesOnWhenTheControllerGoesAndOnlyItsEndIsTold) {
    runScript("echo 'plain slap'; while [ ! -e " + (system.folder / "go") +
              " ]; do sleep 0.01; done; echo 'lost slap'; exit 6");
    EXPECT_TRUE(until([&] { return wrapper->slapCount == 1; }));
    wrapper.reset();
    system.folder.write("go", "");
    EXPECT_TRUE(untilEnded());
    EXPECT_EQ(system.console->lines().back(), "⏹ Spank process ended with code: 6");
}

TEST_F(RealRunner, aMillionBytesOfRubbishHarmNothing) {
    runScript("head -c 1000000 /dev/urandom; exit 5");
    EXPECT_TRUE(untilEnded());
    EXPECT_EQ(wrapper->statusMessage, "Error (code: 5)");
    system.folder.write("osascript", "#!/bin/sh\necho; sleep 0.1; echo 'plain slap'; sleep 30\n");
    wrapper->start();
    EXPECT_TRUE(until([&] { return system.console->lines().back() == "📋 spank: plain slap"; }));
    EXPECT_GE(wrapper->slapCount, 1);
    wrapper->stop();
    system.time->advance(500ms);
    EXPECT_TRUE(untilEnded());
}

// Thirty MB of slaps, written as fast as can be; then the file "done".
constexpr int manySlaps = 1'000'000;
const std::string slapsWithoutPause =
    R"(yes '{"type":"slap","amplitude":0.5}' | head -n )" + std::to_string(manySlaps) + "; : > ";

TEST_F(RealRunner, thatWritesFasterThanItIsReadHasToWaitAndLosesNothing) {
    runScript(slapsWithoutPause + (system.folder / "done") + "; exit 3");
    untilItHasToWait();
    EXPECT_FALSE(std::filesystem::exists(system.folder / "done"));
    EXPECT_TRUE(until([&] { return wrapper->slapCount == manySlaps; }));
    EXPECT_TRUE(until([&] { return !wrapper->isRunning; }));
    EXPECT_EQ(wrapper->statusMessage, "Error (code: 3)");
    EXPECT_TRUE(std::filesystem::exists(system.folder / "done"));
}

TEST_F(RealRunner, thatHasToWaitGoesOnWhenTheControllerGoes) {
    runScript(slapsWithoutPause + (system.folder / "done"));
    untilItHasToWait();
    const std::size_t waiting = system.time->pending();
    wrapper.reset();  // though nobody deals with what waits
    const auto deadline = std::chrono::steady_clock::now() + 60s;
    while (!std::filesystem::exists(system.folder / "done") &&
           std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(std::filesystem::exists(system.folder / "done"));
    // The chunk that had to wait, and the end.
    EXPECT_LE(system.time->pending(), waiting + 2);
    EXPECT_TRUE(untilEnded());
}

}  // namespace
}  // namespace bonkora
