#include "app/Messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QtGlobal>
#include <csignal>
#include <string>

#include "platform/Console.h"

namespace bonkora {
namespace {

TEST(MessagesDeathTest, aFatalMessageComesAfterEverythingThatHasBeenPrinted) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::string lines;
    for (int number = 0; number < 1000; ++number) {
        lines += "line\n";
    }
    const auto end = [] {
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        const auto console = platform::Console::standardOutput();
        const platform::Console::Burst burst(*console);
        for (int number = 0; number < 1000; ++number) {
            console->print("line");
        }
        sendMessagesToStandardError();
        qFatal("broken");
    };
    EXPECT_EXIT(end(), testing::KilledBySignal(SIGABRT),
                testing::StartsWith(lines + "Fatal error: broken\n"));
}

TEST(Messages, leaveStandardOutputAlone) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    sendMessagesToStandardError();
    qWarning("said");
    qInstallMessageHandler(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "said\n");
}

}  // namespace
}  // namespace bonkora
