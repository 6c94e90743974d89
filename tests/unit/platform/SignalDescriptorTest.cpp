#include "platform/SignalDescriptor.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <csignal>
#include <set>

namespace bonkora::platform {
namespace {

bool isReadable(const SignalDescriptor& signals) {
    pollfd watched{signals.get(), POLLIN, 0};
    return ::poll(&watched, 1, 0) == 1;
}

TEST(SignalDescriptor, aSignalThatComesPollsAsReadableAndIsTakenOnce) {
    const SignalDescriptor signals{SIGUSR1, SIGUSR2};
    EXPECT_FALSE(isReadable(signals));
    EXPECT_EQ(signals.take(), std::nullopt);
    std::raise(SIGUSR2);
    EXPECT_TRUE(isReadable(signals));
    EXPECT_EQ(signals.take(), SIGUSR2);
    EXPECT_FALSE(isReadable(signals));
    EXPECT_EQ(signals.take(), std::nullopt);
}

TEST(SignalDescriptor, eachKindIsTakenOnceHoweverOftenItCame) {
    const SignalDescriptor signals{SIGUSR1, SIGUSR2};
    for (int round = 0; round < 2; ++round) {
        for (const int signal : {SIGUSR2, SIGUSR1, SIGUSR2, SIGUSR2, SIGUSR1}) {
            std::raise(signal);
        }
        std::set<int> taken;
        taken.insert(signals.take().value());
        EXPECT_TRUE(isReadable(signals));
        taken.insert(signals.take().value());
        EXPECT_EQ(taken, (std::set<int>{SIGUSR1, SIGUSR2}));
        EXPECT_EQ(signals.take(), std::nullopt);
    }
}

}  // namespace
}  // namespace bonkora::platform
