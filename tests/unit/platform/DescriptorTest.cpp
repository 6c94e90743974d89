#include "platform/Descriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace bonkora::platform {
namespace {

TEST(StandardStreams, closedOnesAreOpenedOnNothing) {
    EXPECT_EXIT(
        {
            ::close(0);
            ::close(1);
            prepareStandardStreams();
            const int next = ::open("/dev/null", O_RDONLY);
            std::_Exit(::write(1, "x", 1) == 1 && next > 2 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(StandardStreams, openOnesStayAsTheyAre) {
    EXPECT_EXIT(
        {
            struct stat before {};
            struct stat after {};
            ::fstat(1, &before);
            prepareStandardStreams();
            ::fstat(1, &after);
            std::_Exit(before.st_ino == after.st_ino && before.st_dev == after.st_dev ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(StandardStreams, aPipeWithoutAReaderIsNoReasonToDie) {
    EXPECT_EXIT(
        {
            ::signal(SIGPIPE, SIG_DFL);
            prepareStandardStreams();
            int ends[2];
            if (::pipe(ends) != 0) {
                std::_Exit(2);
            }
            ::close(ends[0]);
            std::_Exit(::write(ends[1], "x", 1) < 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace bonkora::platform
