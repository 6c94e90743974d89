// However the runner ends, the command and all it started end with it, half a second later at most.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
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
const std::string family = sayNumber + "setsid sh -c 'trap \"\" TERM INT HUP QUIT; " + sayNumber +
                           "while :; do sleep 100; done' & (sh -c '" + sayNumber +
                           "exec setsid sleep 100' &);" + "wait; sleep 100";

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

enum class User { root, plain };

// Root's command gets a PID namespace, anybody else's does not: everything is tried both ways.
class RunnerEnding : public testing::TestWithParam<User> {
  protected:
    void SetUp() override {
        if (GetParam() == User::root && ::geteuid() != 0) {
            GTEST_SKIP() << "only root can run a command as root";
        }
        if (GetParam() == User::plain && ::geteuid() == 0) {
            copyPrograms(folder.path());
            settings.folder = folder.path();
            settings.beforeExec = becomePlainUser;
        }
    }

    RunnerUnderTest run(const std::string& command) {
        return RunnerUnderTest({"-e", scriptFor(command)}, settings);
    }

    // A named pipe that anybody may use.
    std::string makeGate() {
        const std::string gate = folder / "gate";
        EXPECT_EQ(::mkfifo(gate.c_str(), 0600), 0);
        EXPECT_EQ(::chmod(gate.c_str(), 0666), 0);
        return gate;
    }

    // That all members of a family end in time after `end`.
    void expectNothingLeftAfter(const std::function<void(RunnerUnderTest&)>& end) {
        RunnerUnderTest runner = run(family);
        const auto members = readFamily(runner);
        const auto deadline = Clock::now() + endingLimit;
        end(runner);
        expectAllGoneBy(deadline, members);
    }

    TemporaryFolder folder;
    RunnerUnderTest::Settings settings;
};

INSTANTIATE_TEST_SUITE_P(As, RunnerEnding, testing::Values(User::root, User::plain),
                         [](const auto& user) {
                             return user.param == User::root ? "Root" : "User";
                         });

TEST_P(RunnerEnding, byASignalIsWithStatusZeroAndLeavesNothing) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        RunnerUnderTest runner = run(family);
        const auto members = readFamily(runner);
        const auto deadline = Clock::now() + endingLimit;
        runner.signal(signal);
        EXPECT_EQ(runner.waitForStatus(left(deadline)), 0);
        expectAllGoneBy(deadline, members);
        EXPECT_EQ(runner.readErrors(), "");
    }
}

TEST_P(RunnerEnding, isAtOnceWhenTheCommandEndsWhenAsked) {
    RunnerUnderTest runner = run(sayNumber + "exec sleep 100");
    const ProcessWatch command(runner.readProcess());
    runner.signal(SIGTERM);
    EXPECT_EQ(runner.waitForStatus(290ms), 0);  // and not after the 300 ms that it may take
    EXPECT_FALSE(command.isAlive());
}

TEST_P(RunnerEnding, letsTheCommandCleanUpAfterItself) {
    const std::string note = folder.write("note", "");
    ::chmod(note.c_str(), 0666);
    RunnerUnderTest runner =
        run("trap 'echo clean >>" + note + "; exit' TERM; echo; sleep 100 & wait");
    runner.readLine();
    runner.signal(SIGTERM);
    EXPECT_EQ(runner.waitForStatus(), 0);
    EXPECT_EQ(readFile(note), "clean\n");
}

TEST_P(RunnerEnding, byAForcedKillLeavesNothing) {
    expectNothingLeftAfter([](RunnerUnderTest& runner) { runner.signal(SIGKILL); });
}

TEST_P(RunnerEnding, endsACommandThatWasStoppedToo) {
    RunnerUnderTest runner = run(sayNumber + "kill -STOP $$; sleep 100");
    const ProcessWatch command(runner.readProcess());
    runner.signal(SIGKILL);
    EXPECT_TRUE(command.endsWithin(endingLimit));
}

TEST_P(RunnerEnding, comesWhenNobodyReadsTheOutputOfASilentCommand) {
    expectNothingLeftAfter([](RunnerUnderTest& runner) {
        runner.closeOutput();
        EXPECT_EQ(runner.waitForStatus(endingLimit), 0);
    });
}

TEST_P(RunnerEnding, needsNoRunnerToSeeThatNobodyReadsTheOutput) {
    expectNothingLeftAfter([](RunnerUnderTest& runner) {
        runner.signal(SIGSTOP);
        runner.closeOutput();
    });
}

TEST_P(RunnerEnding, comesWhenNobodyReadsTheOutputOfABusyCommand) {
    RunnerUnderTest runner = run(sayNumber + "exec yes");
    const ProcessWatch command(runner.readProcess());
    runner.closeOutput();
    EXPECT_EQ(runner.waitForStatus(endingLimit), 0);
    EXPECT_FALSE(command.isAlive());
    EXPECT_EQ(runner.readErrors(), "");
}

TEST_P(RunnerEnding, withTheCommandEndsWhatItLeftBehind) {
    const std::string gate = makeGate();
    RunnerUnderTest runner =
        run("(setsid sh -c '" + sayNumber + "exec sleep 100' &); read line <" + gate + "; exit 6");
    const ProcessWatch leftBehind(runner.readProcess());
    std::ofstream(gate) << "\n";
    EXPECT_EQ(runner.waitForStatus(), 1);
    EXPECT_FALSE(leftBehind.isAlive());
    EXPECT_EQ(runner.readRest(), "");  // nobody holds the output any more
    EXPECT_THAT(runner.readErrors(), testing::EndsWith("non-zero status. (6)\n"));
}

TEST_P(RunnerEnding, byAForcedKillOfTheElevatedSideLeavesNothing) {
    RunnerUnderTest runner = run(family);
    const auto members = readFamily(runner);
    const auto deadline = Clock::now() + endingLimit;
    ::kill(runner.elevatedSide(), SIGKILL);
    expectAllGoneBy(deadline, members);
    EXPECT_EQ(runner.waitForStatus(), 1);
    EXPECT_THAT(runner.readErrors(),
                testing::EndsWith("The command was ended together with its supervisor. (137)\n"));
}

TEST_P(RunnerEnding, byASignalToItsElevatedSideLeavesNothing) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
        expectNothingLeftAfter([signal](RunnerUnderTest& runner) {
            ::kill(runner.elevatedSide(), signal);
            EXPECT_EQ(runner.waitForStatus(), 1);
        });
    }
}

TEST_P(RunnerEnding, takesAChainOfSixtyThatIgnoresRequestsAsOne) {
    const std::string link = folder.write("link", "trap '' TERM INT HUP QUIT\n" + sayNumber +
                                                      "\n[ $1 -le 1 ] || sh $0 $(($1 - 1)) &\n"
                                                      "while :; do sleep 100; done\n");
    RunnerUnderTest runner = run("sh " + link + " 60");
    std::vector<ProcessWatch> chain;
    chain.reserve(60);
    for (int i = 0; i < 60; ++i) {
        chain.emplace_back(runner.readProcess());
    }
    const auto deadline = Clock::now() + endingLimit;
    runner.signal(SIGKILL);
    expectAllGoneBy(deadline, chain);
}

TEST_P(RunnerEnding, isNoTerminalsBusinessOnTheElevatedSide) {
    RunnerUnderTest runner = run("echo; sleep 100");
    runner.readLine();
    const pid_t elevated = runner.elevatedSide();
    EXPECT_EQ(::getsid(elevated), elevated);
}

#ifdef BONKORA_VANISHING_PROCESSES
// A process of the machine may end between the opening and the reading of its file in /proc.
TEST_P(RunnerEnding, overlooksNobodyWhenOtherProcessesEndAtThatMoment) {
    const std::string library = folder / "vanishing";
    std::filesystem::copy(BONKORA_VANISHING_PROCESSES, library);
    settings.environment["LD_PRELOAD"] = library;
    expectNothingLeftAfter([](RunnerUnderTest& runner) { runner.signal(SIGKILL); });
}
#endif

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

TEST_P(RunnerEnding, isNotNeededForAdoptedProcessesToBeReaped) {
    const std::string gate = makeGate();
    RunnerUnderTest runner =
        run("read -r me name state parent rest </proc/self/stat; echo $parent;"
            "for i in 1 2 3 4 5 6 7 8; do (sh -c : &); done; echo; read line <" +
            gate);
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
