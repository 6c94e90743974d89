#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

mode_t permissionsOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

class PrivilegedLaunch : public testing::Test {
  protected:
    test::TestPlatform system;
    std::shared_ptr<SpankWrapper> wrapper = system.makeController();
    const std::string script = system.temporaryDirectory + "bonkora_launcher.sh";
    const std::string outputPipe = system.temporaryDirectory + "bonkora_output";
    const std::string inputPipe = system.temporaryDirectory + "bonkora_input";

    test::FakeProcess& runner() const { return system.processes->last(); }
    // The factory's reference, and the controller's if it has one.
    static bool isHeld(const std::shared_ptr<test::FakeProcess>& process) {
        return process.use_count() > 1;
    }
};

TEST_F(PrivilegedLaunch, leavesAnExecutableLauncherScript) {
    wrapper->start();
    EXPECT_EQ(test::readFile(script), "#!/bin/bash\nexec \"" + system.detector +
                                          "\" \"--stdio\" \"--cooldown\" \"750\" "
                                          "\"--min-amplitude\" \"0.050\" \"--volume-scaling\"");
    EXPECT_EQ(permissionsOf(script), 0755U);
}

TEST_F(PrivilegedLaunch, makesTwoNamedPipesAsTheCreationMaskAllows) {
    const mode_t mask = ::umask(027);
    wrapper->start();
    ::umask(mask);
    for (const auto& pipe : {outputPipe, inputPipe}) {
        EXPECT_TRUE(std::filesystem::is_fifo(pipe));
        EXPECT_EQ(permissionsOf(pipe), 0640U);
    }
}

TEST_F(PrivilegedLaunch, nobodyElseMayWriteToTheNamedPipesWhateverTheCreationMask) {
    const mode_t mask = ::umask(0);
    wrapper->start();
    ::umask(mask);
    EXPECT_EQ(permissionsOf(outputPipe), 0644U);
    EXPECT_EQ(permissionsOf(inputPipe), 0644U);
    EXPECT_EQ(permissionsOf(script), 0755U);
}

TEST_F(PrivilegedLaunch, deletesTheScriptOnTheGlobalQueueWhateverTheMainOneDoes) {
    const auto globalTime = std::make_shared<test::VirtualTime>();
    platform::Platform platform = system.value();
    platform.globalQueue = std::make_shared<test::ManualGlobalQueue>(globalTime);
    wrapper = SpankWrapper::create(platform);
    wrapper->start();
    system.time->advance(10s);
    EXPECT_TRUE(std::filesystem::exists(script));
    globalTime->advance(2000ms);
    EXPECT_FALSE(std::filesystem::exists(script));
}

TEST_F(PrivilegedLaunch, deletesTheScriptTwoSecondsLaterAndKeepsThePipes) {
    wrapper->start();
    system.time->advance(1999ms);
    EXPECT_TRUE(std::filesystem::exists(script));
    system.time->advance(1ms);
    EXPECT_FALSE(std::filesystem::exists(script));
    EXPECT_TRUE(std::filesystem::exists(outputPipe));
    EXPECT_TRUE(std::filesystem::exists(inputPipe));
}

TEST_F(PrivilegedLaunch, deletesTheScriptAfterAFailedLaunchToo) {
    system.processes->nextFailure = platform::LaunchError{"NSCocoaErrorDomain", 4, "/x/osascript"};
    wrapper->start();
    EXPECT_TRUE(std::filesystem::exists(script));
    system.time->advance(2000ms);
    EXPECT_FALSE(std::filesystem::exists(script));
}

TEST_F(PrivilegedLaunch, deletesTheScriptAlsoWhenTheControllerIsGone) {
    wrapper->start();
    wrapper.reset();
    system.time->advance(2000ms);
    EXPECT_FALSE(std::filesystem::exists(script));
}

TEST_F(PrivilegedLaunch, theFirstOfTwoDeletionsRemovesTheSecondScript) {
    wrapper->start();
    system.time->advance(1500ms);
    runner().end(0);
    system.time->runDue();
    wrapper->start();
    EXPECT_TRUE(std::filesystem::exists(script));
    system.time->advance(500ms);
    EXPECT_FALSE(std::filesystem::exists(script));
    system.time->advance(1500ms);  // the second deletion finds nothing, and says nothing
    EXPECT_TRUE(wrapper->isRunning);
}

TEST_F(PrivilegedLaunch, laterLaunchesFindThePipesInPlaceAndGoOn) {
    wrapper->start();
    const auto first = std::filesystem::last_write_time(outputPipe);
    runner().end(0);
    system.time->runDue();
    std::filesystem::permissions(outputPipe, std::filesystem::perms::owner_read);
    wrapper->start();
    EXPECT_TRUE(wrapper->isRunning);
    EXPECT_EQ(std::filesystem::last_write_time(outputPipe), first);
    EXPECT_EQ(permissionsOf(outputPipe), 0400U);
}

TEST_F(PrivilegedLaunch, aMissingTemporaryDirectoryIsSilent) {
    std::filesystem::remove(system.temporaryDirectory);
    wrapper->start();
    system.time->advance(2s);
    EXPECT_TRUE(wrapper->isRunning);
    EXPECT_EQ(system.console->lines().size(), 2U);
    EXPECT_FALSE(std::filesystem::exists(system.temporaryDirectory));
}

TEST_F(PrivilegedLaunch, aTemporaryDirectoryThatTakesNoFileIsSilent) {
    // A plain file in the directory's place refuses root as well.
    std::filesystem::remove(system.temporaryDirectory);
    system.folder.write("tmp", "");
    wrapper->start();
    system.time->advance(2s);
    EXPECT_TRUE(wrapper->isRunning);
    EXPECT_EQ(system.console->lines().size(), 2U);
}

TEST_F(PrivilegedLaunch, fileNamesAreAppendedToTheDirectoryAsItStands) {
    system.temporaryDirectory = system.folder / "tmp/prefix-";
    wrapper = system.makeController();
    wrapper->start();
    EXPECT_TRUE(std::filesystem::exists(system.folder / "tmp/prefix-bonkora_launcher.sh"));
}

TEST_F(PrivilegedLaunch, aRunnerThatCannotStartIsReportedWithItsReason) {
    system.processes->nextFailure =
        platform::LaunchError{"NSCocoaErrorDomain", 4, "/usr/bin/osascript"};
    wrapper->start();
    EXPECT_EQ(wrapper->statusMessage, "Failed to launch: The file “osascript” doesn’t exist.");
    EXPECT_FALSE(wrapper->isRunning);
    EXPECT_FALSE(isHeld(system.processes->made[0]));
    EXPECT_EQ(system.console->lines().back(),
              "❌ Failed to launch spank: Error Domain=NSCocoaErrorDomain Code=4 \"The file "
              "“osascript” doesn’t exist.\" UserInfo={NSFilePath=/usr/bin/osascript}");
}

TEST_F(PrivilegedLaunch, aFailedLaunchKeepsTheEarlierRunner) {
    wrapper->start();
    runner().end(0);
    system.time->runDue();
    system.processes->nextFailure = platform::LaunchError{"NSPOSIXErrorDomain", 24, "/x"};
    wrapper->start();
    EXPECT_TRUE(isHeld(system.processes->made[0]));
    EXPECT_EQ(wrapper->statusMessage,
              "Failed to launch: The operation couldn’t be completed. Too many open files");
}

TEST_F(PrivilegedLaunch, statusZeroReadsStopped) {
    wrapper->start();
    system.console->take();
    runner().end(0);
    EXPECT_TRUE(wrapper->isRunning);  // the report comes through the main queue
    system.time->runDue();
    EXPECT_FALSE(wrapper->isRunning);
    EXPECT_EQ(wrapper->statusMessage, "Stopped");
    EXPECT_EQ(system.console->take(), Lines{"⏹ Spank process ended with code: 0"});
}

TEST_F(PrivilegedLaunch, anyOtherStatusIsShownAsAnError) {
    for (const int status : {1, 15, 255}) {
        wrapper->start();
        runner().end(status);
        system.time->runDue();
        EXPECT_FALSE(wrapper->isRunning);
        EXPECT_EQ(wrapper->statusMessage, "Error (code: " + std::to_string(status) + ")");
        EXPECT_EQ(system.console->take().back(),
                  "⏹ Spank process ended with code: " + std::to_string(status));
    }
}

TEST_F(PrivilegedLaunch, aFinishedRunnerIsHeldUntilStopLetsItGo) {
    wrapper->start();
    runner().end(0);
    system.time->runDue();
    EXPECT_TRUE(isHeld(system.processes->made[0]));
    wrapper->start();
    EXPECT_FALSE(isHeld(system.processes->made[0]));  // replaced, not terminated
    EXPECT_EQ(system.processes->made[0]->terminations, 0);
    wrapper->stop();
    system.time->advance(500ms);
    EXPECT_FALSE(isHeld(system.processes->made[1]));
}

TEST_F(PrivilegedLaunch, withoutAControllerOnlyTheConsoleHearsOfTheEnd) {
    wrapper->start();
    system.console->take();
    wrapper.reset();
    runner().print("{\"type\":\"slap\"}\nplain slap\n");
    runner().end(3);
    system.time->runDue();
    EXPECT_EQ(system.console->take(), Lines{"⏹ Spank process ended with code: 3"});
}

TEST_F(PrivilegedLaunch, anObserverMayLetTheControllerGoInTheMiddleOfAReport) {
    wrapper->start();
    const auto subscription = wrapper->objectWillChange.sink([&] { wrapper.reset(); });
    runner().end(0);
    system.time->runDue();
    EXPECT_EQ(wrapper, nullptr);
    EXPECT_EQ(system.console->lines().back(), "⏹ Spank process ended with code: 0");
}

TEST_F(PrivilegedLaunch, anObserverMayLetTheControllerGoInTheMiddleOfAnyOperation) {
    // At each of the announcements that the operation makes.
    const auto survives = [&](const auto& operation, bool isRunning) {
        int announcements = 1;
        for (int last = 1; last <= announcements; ++last) {
            wrapper = system.makeController();
            wrapper->isRunning = isRunning;
            announcements = 0;
            const auto subscription = wrapper->objectWillChange.sink([&] {
                if (++announcements == last) {
                    wrapper.reset();
                }
            });
            operation(*wrapper);
            EXPECT_EQ(wrapper, nullptr);
        }
    };
    survives([](SpankWrapper& one) { one.start(); }, false);
    survives([](SpankWrapper& one) { one.switchMode(Mode::halo); }, false);
    survives([](SpankWrapper& one) { one.switchMode(Mode::halo); }, true);
    survives([](SpankWrapper& one) { one.customSoundPath = "/a folder"; }, false);
    std::filesystem::remove(system.detector);
    survives([](SpankWrapper& one) { one.start(); }, false);
}

TEST_F(PrivilegedLaunch, anEndOfUnknownStatusIsNotShownAsAStop) {
    wrapper->start();
    runner().end(platform::Process::unknownStatus);
    system.time->runDue();
    EXPECT_EQ(wrapper->statusMessage, "Error (code: -1)");
}

TEST_F(PrivilegedLaunch, outputReachesTheControllerThroughTheMainQueue) {
    wrapper->start();
    runner().print("{\"type\":\"slap\"}\n");
    EXPECT_EQ(wrapper->slapCount, 0);
    system.time->runDue();
    EXPECT_EQ(wrapper->slapCount, 1);
}

TEST_F(PrivilegedLaunch, aChunkThatEndsInsideACharacterIsDroppedWholeAndSoIsItsRest) {
    wrapper->start();
    runner().print("slap \xF0\x9F");
    runner().print("\x91\x8B slap\n");
    runner().print("slap \xF0\x9F\x91\x8B\n");
    system.time->runDue();
    EXPECT_EQ(wrapper->slapCount, 1);
    EXPECT_EQ(system.console->lines().back(), "📋 spank: slap 👋");
}

TEST_F(PrivilegedLaunch, anEmptyChunkIsNotTheEndOfTheStream) {
    wrapper->start();
    runner().print("sl");
    runner().print("");
    runner().print("ap\n");
    system.time->runDue();
    EXPECT_EQ(wrapper->slapCount, 1);
}

}  // namespace
}  // namespace bonkora
