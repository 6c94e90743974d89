#include "platform/Console.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "platform/Descriptor.h"

namespace bonkora::platform {
namespace {

// Runs `body` with standard output connected to `descriptor`.
template <typename Body>
void withStandardOutput(int descriptor, const Body& body) {
    const UniqueDescriptor saved(::dup(STDOUT_FILENO));
    descriptor >= 0 ? ::dup2(descriptor, STDOUT_FILENO) : ::close(STDOUT_FILENO);
    body();
    ::dup2(saved.get(), STDOUT_FILENO);
}

void expectItPrints(Console& console) {
    auto pipe = Pipe::make();
    ASSERT_TRUE(pipe);
    std::string read(100, '\0');
    withStandardOutput(pipe->fileHandleForWriting.get(), [&] {
        console.print("next");
        const auto count = ::read(pipe->fileHandleForReading.get(), read.data(), read.size());
        read.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    });
    EXPECT_EQ(read, "next\n");
}

TEST(Console, aLineIsOutAtOnceAlsoIntoAPipe) {
    auto pipe = Pipe::make();
    ASSERT_TRUE(pipe);
    const auto console = Console::standardOutput();
    std::string read(100, '\0');
    withStandardOutput(pipe->fileHandleForWriting.get(), [&] {
        console->print("👋 Slap #1");
        const auto count = ::read(pipe->fileHandleForReading.get(), read.data(), read.size());
        read.resize(static_cast<std::size_t>(count));
    });
    EXPECT_EQ(read, "👋 Slap #1\n");
}

TEST(Console, theLinesOfABurstGoOutTogetherAtItsEnd) {
    auto pipe = Pipe::make();
    ASSERT_TRUE(pipe);
    const auto console = Console::standardOutput();
    std::string read(100, '\0');
    withStandardOutput(pipe->fileHandleForWriting.get(), [&] {
        pollfd readable{pipe->fileHandleForReading.get(), POLLIN, 0};
        {
            const Console::Burst outer(*console);
            const Console::Burst inner(*console);
            console->print("one");
            console->print("two");
            EXPECT_EQ(::poll(&readable, 1, 0), 0);
        }
        ASSERT_EQ(::poll(&readable, 1, 0), 1);
        const auto count = ::read(readable.fd, read.data(), read.size());
        read.resize(static_cast<std::size_t>(count));
    });
    EXPECT_EQ(read, "one\ntwo\n");
}

TEST(Console, aClosedOutputLosesTheLineAndNothingElse) {
    const auto console = Console::standardOutput();
    withStandardOutput(-1, [&] { console->print("lost"); });
    expectItPrints(*console);
}

TEST(Console, aPipeWithoutAReaderLosesTheLineAndNothingElse) {
    auto pipe = Pipe::make();
    ASSERT_TRUE(pipe);
    pipe->fileHandleForReading.reset();
    const auto before = ::signal(SIGPIPE, SIG_IGN);
    const auto console = Console::standardOutput();
    withStandardOutput(pipe->fileHandleForWriting.get(), [&] { console->print("lost"); });
    ::signal(SIGPIPE, before);
    expectItPrints(*console);
}

}  // namespace
}  // namespace bonkora::platform
