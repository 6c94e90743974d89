// The controller over thousands of real children, with only its own pauses in virtual time: no
// count lost, no descriptor, thread, zombie or memory left.
//
// BONKORA_CYCLES says how many starts and stops (default 100; the rest in proportion).
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "tests/support/Descriptors.h"
#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;

constexpr int slapsOfEach = 500;

// The sanitizers keep what was freed; they find leaks by themselves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool memoryTells = false;
#else
constexpr bool memoryTells = true;
#endif

int cycles() {
    const char* const value = std::getenv("BONKORA_CYCLES");
    return value == nullptr ? 100 : std::atoi(value);
}

long threads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

long residentKiB() {
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

bool hasChildren() {
    siginfo_t info{};
    return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0;
}

// Threads and descriptors of the last child are let go a moment after its end is told.
template <typename Question>
bool settles(const Question& holds) {
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        ::sched_yield();
    }
    return true;
}

class Endurance : public testing::Test {
  protected:
    // A runner that reports its slaps in one go and then waits to be asked to end.
    void SetUp() override {
        std::string lines;
        for (int number = 0; number < slapsOfEach; ++number) {
            lines += "{\"type\":\"slap\",\"amplitude\":0.5}\n";
        }
        const auto text = system.folder.write("lines", lines);
        runner = system.folder.write("osascript",
                                     "#!/bin/sh\ncat '" + text + "'\nexec sleep 1000\n", true);
        platform::Platform platform = system.value();
        platform.runnerPath = [this] { return runner; };
        platform.makeProcess = [this] {
            made.push_back(platform::makePosixProcess());
            return made.back();
        };
        wrapper = SpankWrapper::create(platform);
    }

    void startAndCount() {
        wrapper->start();
        expected += slapsOfEach;
        ASSERT_TRUE(system.time->runUntil([&] { return wrapper->slapCount == expected; }));
    }
    void untilEnded(std::size_t reports) {
        ASSERT_TRUE(system.time->runUntil([&] {
            for (const std::string& line : system.console->take()) {
                ended += line.find("ended with code") != std::string::npos ? 1U : 0U;
            }
            return ended >= reports;
        }));
    }
    void oneCycle() {
        startAndCount();
        wrapper->stop();
        system.time->advance(500ms);
        untilEnded(++starts);
        made.clear();
    }

    test::TestPlatform system;
    std::string runner;
    std::shared_ptr<SpankWrapper> wrapper;
    std::vector<std::shared_ptr<platform::Process>> made;
    std::int64_t expected = 0;
    std::size_t starts = 0;
    std::size_t ended = 0;
};

TEST_F(Endurance, startsAndStopsLeaveNothingAndLoseNothing) {
    for (int warm = 0; warm < 20; ++warm) {
        oneCycle();
    }
    system.time->advance(2s);
    const long descriptors = test::openDescriptors();
    const long threadsBefore = threads();
    const long memory = residentKiB();
    for (int cycle = 0; cycle < cycles(); ++cycle) {
        oneCycle();
        if (HasFatalFailure()) {
            FAIL() << "in cycle " << cycle;
        }
    }
    EXPECT_EQ(wrapper->slapCount, std::int64_t{slapsOfEach} * (20 + cycles()));
    EXPECT_TRUE(settles([&] { return threads() <= threadsBefore; })) << threads();
    EXPECT_TRUE(settles([&] { return test::openDescriptors() <= descriptors; }))
        << test::openDescriptors();
    EXPECT_FALSE(hasChildren());
    if (memoryTells) {
        EXPECT_LT(residentKiB() - memory, 4096);
    }
}

TEST_F(Endurance, overlappingRestartsAndKilledRunnersLoseNothing) {
    std::mt19937 random(1);
    startAndCount();
    for (int restart = 0; restart < cycles() / 4; ++restart) {
        wrapper->restart();
        auto passed = 0ms;
        if (random() % 2 == 0) {  // a second request before the first has ended anything
            passed = std::chrono::milliseconds(random() % 500);
            system.time->advance(passed);
            wrapper->restart();
        }
        if (random() % 3 == 0) {
            ::kill(made.back()->processIdentifier(), SIGKILL);
        }
        system.time->advance(500ms - passed);
        untilEnded(made.size());  // as in real time, the old one is gone before the new one begins
        system.time->advance(1500ms);
        ASSERT_EQ(made.size(), static_cast<std::size_t>(restart) + 2);
        expected += slapsOfEach;
        ASSERT_TRUE(system.time->runUntil([&] { return wrapper->slapCount == expected; }))
            << "restart " << restart << ": " << wrapper->slapCount << " of " << expected;
    }
    wrapper->stop();
    system.time->advance(500ms);
    untilEnded(made.size());
    EXPECT_TRUE(settles([] { return !hasChildren(); }));
}

}  // namespace
}  // namespace bonkora
