// However the runner ends, the command and all it started end with it, half a second later at most.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <sstream>

#include "tests/support/TemporaryFolder.h"
#include "tests/unit/runner/ProcessWatch.h"
#include "tests/unit/runner/RunnerUnderTest.h"

namespace bonkora::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// By which everything has to be gone.
constexpr std::chrono::milliseconds endingLimit{BONKORA_ENDING_LIMIT};

// Prints the numbers of three processes that stay: itself, one that left the process group and the
// session and ignores every request to end, and one whose parent has ended already.
const std::string family =
    "echo $$;"
    "setsid sh -c 'trap \"\" TERM INT HUP; echo $$; while :; do sleep 100; done' &"
    "(sh -c 'echo $$; exec setsid sleep 100' &);"
    "wait; sleep 100";

std::vector<ProcessWatch> readFamily(RunnerUnderTest& runner) {
    std::vector<ProcessWatch> members;
    members.reserve(3);
    for (int i = 0; i < 3; ++i) {
        members.emplace_back(runner.readProcess());
    }
    return members;
}

std::chrono::milliseconds left(Clock::time_point deadline) {
    return std::max(0ms, std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()));
}

void expectAllGoneBy(Clock::time_point deadline, const std::vector<ProcessWatch>& processes) {
    for (const ProcessWatch& process : processes) {
        EXPECT_TRUE(process.endsWithin(left(deadline)));
    }
}

class RunnerEndingBy : public testing::TestWithParam<int> {};

TEST_P(RunnerEndingBy, aSignalEndsWithStatusZeroAndLeavesNothing) {
    RunnerUnderTest runner({"-e", scriptFor(family)});
    const auto members = readFamily(runner);
    const auto deadline = Clock::now() + endingLimit;
    runner.signal(GetParam());
    EXPECT_EQ(runner.waitForStatus(left(deadline)), 0);
    expectAllGoneBy(deadline, members);
    EXPECT_EQ(runner.readErrors(), "");
}

INSTANTIATE_TEST_SUITE_P(Signals, RunnerEndingBy, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(RunnerEnding, isAtOnceWhenTheCommandEndsWhenAsked) {
    RunnerUnderTest runner({"-e", scriptFor("echo $$; exec sleep 100")});
    const ProcessWatch command(runner.readProcess());
    runner.signal(SIGTERM);
    EXPECT_EQ(runner.waitForStatus(390ms), 0);  // and not after the 400 ms it may wait
    EXPECT_FALSE(command.isAlive());
}

TEST(RunnerEnding, letsTheCommandCleanUpAfterItself) {
    const TemporaryFolder folder;
    const std::string note = folder / "note";
    RunnerUnderTest runner(
        {"-e", scriptFor("trap 'echo clean >" + note + "; exit' TERM; echo $$; sleep 100 & wait")});
    runner.readProcess();
    runner.signal(SIGTERM);
    EXPECT_EQ(runner.waitForStatus(), 0);
    EXPECT_EQ(readFile(note), "clean\n");
}

TEST(RunnerEnding, byAForcedKillLeavesNothing) {
    RunnerUnderTest runner({"-e", scriptFor(family)});
    const auto members = readFamily(runner);
    const auto deadline = Clock::now() + endingLimit;
    runner.signal(SIGKILL);
    expectAllGoneBy(deadline, members);
    EXPECT_EQ(runner.waitForStatus(), -SIGKILL);
}

TEST(RunnerEnding, endsACommandThatWasStoppedToo) {
    RunnerUnderTest runner({"-e", scriptFor("echo $$; kill -STOP $$; sleep 100")});
    const ProcessWatch command(runner.readProcess());
    runner.signal(SIGKILL);
    EXPECT_TRUE(command.endsWithin(endingLimit));
}

TEST(RunnerEnding, comesWhenNobodyReadsTheOutputOfASilentCommand) {
    RunnerUnderTest runner({"-e", scriptFor(family)});
    const auto members = readFamily(runner);
    const auto deadline = Clock::now() + endingLimit;
    runner.closeOutput();
    EXPECT_EQ(runner.waitForStatus(left(deadline)), 0);
    expectAllGoneBy(deadline, members);
}

TEST(RunnerEnding, comesWhenNobodyReadsTheOutputOfABusyCommand) {
    RunnerUnderTest runner({"-e", scriptFor("echo $$; exec yes")});
    const ProcessWatch command(runner.readProcess());
    runner.closeOutput();
    EXPECT_EQ(runner.waitForStatus(endingLimit), 0);
    EXPECT_FALSE(command.isAlive());
    EXPECT_EQ(runner.readErrors(), "");
}

TEST(RunnerEnding, withTheCommandEndsWhatItLeftBehind) {
    const TemporaryFolder folder;
    const std::string gate = folder / "gate";
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    RunnerUnderTest runner(
        {"-e", scriptFor("(setsid sh -c 'echo $$; echo >" + gate +
                         "; exec sleep 100' &); read line <" + gate + "; exit 6")});
    const ProcessWatch leftBehind(runner.readProcess());
    EXPECT_EQ(runner.waitForStatus(), 1);
    EXPECT_FALSE(leftBehind.isAlive());
    EXPECT_EQ(runner.readRest(), "");  // nobody holds the output any more
    EXPECT_THAT(runner.readErrors(), testing::EndsWith("non-zero status. (6)\n"));
}

TEST(RunnerEnding, followsTheEndOfItsElevatedSide) {
    // The parent of the command's shell.
    RunnerUnderTest runner({"-e", scriptFor("echo $PPID; echo $$; sleep 100")});
    const pid_t elevated = runner.readProcess();
    const ProcessWatch command(runner.readProcess());
    ::kill(elevated, SIGKILL);
    EXPECT_EQ(runner.waitForStatus(), 1);
    EXPECT_TRUE(command.endsWithin(endingLimit));
    EXPECT_THAT(runner.readErrors(),
                testing::EndsWith("The command was ended together with its supervisor. (137)\n"));
}

TEST(RunnerEnding, byASignalToItsElevatedSideLeavesNothing) {
    RunnerUnderTest runner({"-e", scriptFor("echo $PPID; " + family)});
    const pid_t elevated = runner.readProcess();
    const auto members = readFamily(runner);
    const auto deadline = Clock::now() + endingLimit;
    ::kill(elevated, SIGTERM);
    expectAllGoneBy(deadline, members);
    EXPECT_EQ(runner.waitForStatus(), 1);
}

// The state letters of a process's children.
std::string statesOfChildren(pid_t parent) {
    std::string states;
    std::ifstream list("/proc/" + std::to_string(parent) + "/task/" + std::to_string(parent) +
                       "/children");
    for (pid_t child = 0; list >> child;) {
        std::string number;
        std::string name;
        char state = '?';
        std::ifstream("/proc/" + std::to_string(child) + "/stat") >> number >> name >> state;
        states += state;
    }
    return states;
}

TEST(RunnerEnding, isNotNeededForAdoptedProcessesToBeReaped) {
    const TemporaryFolder folder;
    const std::string gate = folder / "gate";
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    RunnerUnderTest runner(
        {"-e", scriptFor("echo $PPID; for i in 1 2 3 4 5 6 7 8; do (sh -c : &); done;"
                         "echo; read line <" +
                         gate)});
    const pid_t elevated = runner.readProcess();
    runner.readLine();
    const auto deadline = Clock::now() + 10s;
    std::string states;
    while ((states = statesOfChildren(elevated)).size() != 1 && Clock::now() < deadline) {
        ::poll(nullptr, 0, 5);
    }
    EXPECT_EQ(states.size(), 1U) << states;  // the command's own shell
    std::ofstream(gate) << "\n";
    EXPECT_EQ(runner.waitForStatus(), 0);
}

}  // namespace
}  // namespace bonkora::test
