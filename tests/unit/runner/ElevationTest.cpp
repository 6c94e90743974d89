// The way through pkexec, with a stand-in for it that does as the test says. As root the runner
// would ask nobody, so there these tests run it as an unprivileged user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/support/TemporaryFolder.h"
#include "tests/unit/runner/ProcessWatch.h"
#include "tests/unit/runner/RunnerUnderTest.h"

namespace bonkora::test {
namespace {

using namespace std::chrono_literals;
using testing::EndsWith;
namespace fs = std::filesystem;

class Elevation : public testing::Test {
  protected:
    Elevation() {
        copyPrograms(folder.path());
        ::mkfifo((folder / "gate").c_str(), 0666);
        ::chmod((folder / "gate").c_str(), 0666);
        settings.folder = folder.path();
        settings.environment = {{"PATH", folder / "bin:/usr/bin:/bin"}, {"HOME", "/home/u"}};
        settings.beforeExec = becomePlainUser;
    }

    void usePkexec(const std::string& script) {
        folder.write("bin/pkexec", "#!/bin/sh\n" + script + "\n", true);
    }

    RunnerUnderTest run(const std::string& command) {
        return RunnerUnderTest({"-e", scriptFor(command, true)}, settings);
    }

    std::string errorsOf(const std::string& command) {
        RunnerUnderTest runner = run(command);
        EXPECT_EQ(runner.waitForStatus(), 1);
        return runner.readErrors();
    }

    TemporaryFolder folder;
    RunnerUnderTest::Settings settings;
};

TEST_F(Elevation, runsTheCommandOnceAllowed) {
    usePkexec("shift; exec \"$@\"");
    RunnerUnderTest runner = run("echo good");
    EXPECT_EQ(runner.readRest(), "good\n");
    EXPECT_EQ(runner.waitForStatus(), 0);
}

TEST_F(Elevation, callsPkexecWithoutAnEnvironmentAndByTheRealPath) {
    fs::create_symlink(folder.path(), folder / "link");
    settings.folder = folder / "link";
    usePkexec("wc -c </proc/$$/environ; printf '%s|' \"$@\"; kill -9 $$");
    RunnerUnderTest runner = run("echo \"good\"");
    EXPECT_EQ(runner.readRest(), "0\n--disable-internal-agent|" +
                                     fs::canonical(folder.path()).string() + "/bonkora-elevated|" +
                                     "echo \"good\"|" + fs::current_path().string() + "|");
}

TEST_F(Elevation, reportsADismissedPrompt) {
    usePkexec("echo Dismissed. >&2; exit 126");
    EXPECT_EQ(errorsOf("echo bad"), "0:56: execution error: User canceled. (-128)\n");
}

TEST_F(Elevation, reportsARefusalWithItsReason) {
    usePkexec("echo No agent. >&2; exit 127");
    EXPECT_EQ(errorsOf("echo bad"),
              "0:56: execution error: Administrator rights were refused. No agent. (-60005)\n");
}

TEST_F(Elevation, reportsTheSameNumbersOfACommandAsTheCommands) {
    usePkexec("shift; exec \"$@\"");
    EXPECT_THAT(errorsOf("exit 126"), EndsWith("non-zero status. (126)\n"));
    EXPECT_THAT(errorsOf("echo boom >&2; exit 127"), EndsWith(": boom (127)\n"));
}

TEST_F(Elevation, saysThatPkexecIsMissing) {
    settings.environment["PATH"] = folder / "bin";
    EXPECT_THAT(errorsOf("echo bad"), EndsWith("execution error: pkexec is missing, which asks for "
                                               "administrator rights. (-43)\n"));
}

TEST_F(Elevation, takesThePromptAwayWhenTheRunnerIsAskedToEnd) {
    usePkexec("echo $$; exec sleep 100");
    RunnerUnderTest runner = run("echo bad");
    const ProcessWatch prompt(runner.readProcess());
    runner.signal(SIGTERM);
    EXPECT_EQ(runner.waitForStatus(20s), 0);
    EXPECT_TRUE(prompt.endsWithin(20s));
    EXPECT_EQ(runner.readErrors(), "");
}

TEST_F(Elevation, startsNothingWhenTheAnswerComesAfterTheRunnersEnd) {
    usePkexec("echo $$; read line <" + folder / "gate" + "; shift; exec \"$@\"");
    RunnerUnderTest runner = run("echo bad");
    const ProcessWatch prompt(runner.readProcess());
    runner.signal(SIGKILL);
    EXPECT_EQ(runner.waitForStatus(), -SIGKILL);
    std::ofstream(folder / "gate") << "\n";
    EXPECT_TRUE(prompt.endsWithin(20s));
    EXPECT_EQ(runner.readRest(), "");
}

TEST_F(Elevation, asksNobodyAboutWhatNoPromptCouldShow) {
    usePkexec("echo bad");
    RunnerUnderTest runner = run("echo\u202E bad");
    EXPECT_EQ(runner.readErrors(),
              "0:57: execution error: The command was refused: it holds the invisible character "
              "U+202E. (1)\n");
    EXPECT_EQ(runner.readRest(), "");
}

TEST_F(Elevation, isNotAskedForAnOrdinaryCommand) {
    usePkexec("echo bad");
    RunnerUnderTest runner({"-e", scriptFor("echo good")}, settings);
    EXPECT_EQ(runner.readRest(), "good\n");
}

}  // namespace
}  // namespace bonkora::test
