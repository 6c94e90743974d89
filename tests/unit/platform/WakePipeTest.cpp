#include "platform/WakePipe.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <cerrno>

namespace bonkora::platform {
namespace {

bool isReadable(const WakePipe& wake) {
    pollfd watched{wake.descriptor(), POLLIN, 0};
    return ::poll(&watched, 1, 0) == 1;
}

TEST(WakePipe, pollsAsReadableFromSetToClear) {
    const auto wake = WakePipe::make();
    EXPECT_FALSE(isReadable(*wake));
    wake->set();
    EXPECT_TRUE(isReadable(*wake));
    wake->clear();
    EXPECT_FALSE(isReadable(*wake));
}

TEST(WakePipe, howeverOftenItWasSetOneClearIsEnoughAndNothingWaits) {
    const auto wake = WakePipe::make();
    errno = 0;
    for (int i = 0; i < 100000; ++i) {  // more than a pipe holds
        wake->set();
    }
    EXPECT_EQ(errno, 0);
    wake->clear();
    EXPECT_FALSE(isReadable(*wake));
    wake->set();
    EXPECT_TRUE(isReadable(*wake));
}

}  // namespace
}  // namespace bonkora::platform
