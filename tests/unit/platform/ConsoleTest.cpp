#include "platform/Console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <thread>

#include "platform/Descriptor.h"

namespace bonkora::platform {
namespace {

// Runs `body` with `standard`, a descriptor of this process, connected to `descriptor`.
template <typename Body>
void with(int standard, int descriptor, const Body& body) {
    const UniqueDescriptor saved(::dup(standard));
    descriptor >= 0 ? ::dup2(descriptor, standard) : ::close(standard);
    body();
    ::dup2(saved.get(), standard);
}

std::string readOnce(const UniqueDescriptor& descriptor) {
    std::string text(65536, '\0');
    const auto count = ::read(descriptor.get(), text.data(), text.size());
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
}

// What `body` writes to standard error, up to what a pipe holds.
template <typename Body>
std::string errorsOf(const Body& body) {
    auto errors = Pipe::make();
    with(STDERR_FILENO, errors->fileHandleForWriting.get(), body);
    errors->fileHandleForWriting.reset();
    return readOnce(errors->fileHandleForReading);
}

class ConsoleTest : public testing::Test {
  protected:
    // Runs `body` with standard output connected to the pipe, and waits until all lines are out.
    template <typename Body>
    void withPipe(const Body& body) {
        with(STDOUT_FILENO, pipe->fileHandleForWriting.get(), [&] {
            body();
            console->flush();
        });
    }
    void expectItPrints() {
        withPipe([&] { console->print("next"); });
        EXPECT_EQ(readOnce(pipe->fileHandleForReading), "next\n");
    }
    bool canBeRead(int milliseconds) const {
        pollfd readable{pipe->fileHandleForReading.get(), POLLIN, 0};
        return ::poll(&readable, 1, milliseconds) == 1;
    }
    // Everything, until the writing end is closed by everybody.
    std::string readAll() {
        pipe->fileHandleForWriting.reset();
        std::string all;
        for (std::string text = readOnce(pipe->fileHandleForReading); !text.empty();
             text = readOnce(pipe->fileHandleForReading)) {
            all += text;
        }
        return all;
    }

    std::shared_ptr<Console> console = Console::standardOutput();
    std::optional<Pipe> pipe = Pipe::make();
};

TEST_F(ConsoleTest, aLineIsOutAtOnceAlsoIntoAPipe) {
    with(STDOUT_FILENO, pipe->fileHandleForWriting.get(), [&] {
        console->print("👋 Slap #1");
        EXPECT_TRUE(canBeRead(10000));
    });
    EXPECT_EQ(readOnce(pipe->fileHandleForReading), "👋 Slap #1\n");
}

TEST_F(ConsoleTest, theLinesOfABurstGoOutTogetherAtItsEnd) {
    withPipe([&] {
        {
            const Console::Burst outer(*console);
            const Console::Burst inner(*console);
            console->print("one");
            console->print("two");
            EXPECT_FALSE(canBeRead(20));
        }
        EXPECT_TRUE(canBeRead(10000));
    });
    EXPECT_EQ(readOnce(pipe->fileHandleForReading), "one\ntwo\n");
}

TEST_F(ConsoleTest, aFlushBringsOutTheLinesOfAnUnfinishedBurst) {
    const Console::Burst burst(*console);
    withPipe([&] { console->print("one"); });
    EXPECT_EQ(readOnce(pipe->fileHandleForReading), "one\n");
}

TEST_F(ConsoleTest, aClosedOutputLosesTheLineAndNothingElse) {
    with(STDOUT_FILENO, -1, [&] {
        console->print("lost");
        console->flush();
    });
    expectItPrints();
}

TEST_F(ConsoleTest, aPipeWithoutAReaderLosesTheLineAndNothingElse) {
    auto unread = Pipe::make();
    unread->fileHandleForReading.reset();
    const auto before = ::signal(SIGPIPE, SIG_IGN);
    with(STDOUT_FILENO, unread->fileHandleForWriting.get(), [&] {
        console->print("lost");
        console->flush();
    });
    ::signal(SIGPIPE, before);
    expectItPrints();
}

TEST_F(ConsoleTest, whoReadsGetsEveryLineInOrder) {
    std::string expected;
    std::string read;
    withPipe([&] {
        std::thread reader([&] {
            while (read.find("end\n") == std::string::npos) {
                read += readOnce(pipe->fileHandleForReading);
            }
        });
        for (int number = 0; number < 100'000; ++number) {
            const std::string line = "line " + std::to_string(number);
            console->print(line);
            expected += line + '\n';
        }
        console->print("end");
        reader.join();
    });
    EXPECT_EQ(read, expected + "end\n");
}

TEST_F(ConsoleTest, oneWhoDoesNotReadIsNotWaitedForAndMissesWholeLinesThatAreCounted) {
    const std::string filler(1000, 'x');
    constexpr int printed = 10'000;  // more than twice what is kept
    const std::string errors = errorsOf([&] {
        with(STDOUT_FILENO, pipe->fileHandleForWriting.get(), [&] {
            for (int number = 0; number < printed; ++number) {
                console->print(std::to_string(number) + filler);
            }
            console->flush();  // gives up
        });
    });
    // The writer may take the pipe for its own standard output until it has put out everything.
    std::string read;
    with(STDOUT_FILENO, pipe->fileHandleForWriting.get(), [&] {
        std::thread reader([&] {
            while (read.find("end\n") == std::string::npos) {
                read += readOnce(pipe->fileHandleForReading);
            }
        });
        console->flush();
        console->print("end");
        reader.join();
    });
    std::istringstream lines(read);
    int kept = 0;
    for (std::string line; std::getline(lines, line) && line != "end"; ++kept) {
        ASSERT_EQ(line, std::to_string(kept) + filler);
    }
    EXPECT_GT(kept, printed / 10);
    EXPECT_LT(static_cast<std::size_t>(kept) * filler.size(), Console::capacity + 200'000);
    EXPECT_EQ(errors, "bonkora: " + std::to_string(printed - kept) +
                          " lines of standard output were dropped, since nobody read it\n");
}

TEST_F(ConsoleTest, aLineLongerThanAllThatIsKeptComesWhole) {
    const std::string line(Console::capacity + 1000, 'x');
    std::string read;
    withPipe([&] {
        std::thread reader([&] {
            while (read.size() < line.size() + 1) {
                read += readOnce(pipe->fileHandleForReading);
            }
        });
        console->print(line);
        reader.join();
    });
    EXPECT_TRUE(read == line + '\n');
}

std::string thousandLines() {
    std::string lines;
    for (int number = 0; number < 1000; ++number) {
        lines += "line\n";
    }
    return lines;
}

// The end of a program of its own whose output goes where its errors go. It is started anew, since
// a process that was forked beside a writer thread may have none of its own.
#define EXPECT_OUTPUT_BEFORE_THE_END(end, predicate, atTheEnd) \
    GTEST_FLAG_SET(death_test_style, "threadsafe");            \
    EXPECT_EXIT(                                               \
        {                                                      \
            ::dup2(STDERR_FILENO, STDOUT_FILENO);              \
            const auto own = Console::standardOutput();        \
            const Console::Burst burst(*own);                  \
            for (int number = 0; number < 1000; ++number) {    \
                own->print("line");                            \
            }                                                  \
            end;                                               \
        },                                                     \
        predicate, testing::StartsWith(thousandLines() + (atTheEnd)))

TEST_F(ConsoleTest, everythingIsOutBeforeTheProgramEnds) {
    EXPECT_OUTPUT_BEFORE_THE_END(std::exit(0), testing::ExitedWithCode(0), "");
}

TEST_F(ConsoleTest, everythingIsOutBeforeAFatalError) {
    EXPECT_OUTPUT_BEFORE_THE_END(fatalError("broken"), testing::KilledBySignal(SIGABRT),
                                 "Fatal error: broken\n");
}

TEST_F(ConsoleTest, allWhoPrintShareOneConsole) {
    EXPECT_EQ(Console::standardOutput(), console);
}

}  // namespace
}  // namespace bonkora::platform
