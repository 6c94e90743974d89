#include "detector/sensing/Ticker.h"

#include <gtest/gtest.h>
#include <poll.h>

namespace bonkora::detector {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

bool isReadable(const Ticker& ticker, std::chrono::milliseconds patience) {
    pollfd watched{ticker.descriptor(), POLLIN, 0};
    return ::poll(&watched, 1, static_cast<int>(patience.count())) == 1;
}

TEST(Ticker, tellsEveryPeriodThatHasPassedAndNoneBefore) {
    constexpr auto tick = 2ms;
    const auto begin = Clock::now();
    const auto ticker = Ticker::every(tick);
    std::uint64_t told = 0;
    while (told < 10) {
        ASSERT_TRUE(isReadable(*ticker, 60s));
        const auto periods = ticker->take();
        EXPECT_GT(periods, 0U);
        told += periods;
        EXPECT_GE(Clock::now() - begin, tick * static_cast<int>(told));
    }
}

TEST(Ticker, periodsThatNobodyTookAreToldTogether) {
    constexpr auto tick = 1ms;
    const auto ticker = Ticker::every(tick);
    // Another ticker measures the time: this one has passed as many periods when it is asked.
    const auto other = Ticker::every(20 * tick);
    ASSERT_TRUE(isReadable(*other, 60s));
    ASSERT_TRUE(isReadable(*ticker, 60s));
    EXPECT_GE(ticker->take(), 15U);
}

TEST(Ticker, isReadableOnlyWhileThereIsSomethingToTake) {
    const auto ticker = Ticker::every(1h);
    EXPECT_FALSE(isReadable(*ticker, 0ms));
    EXPECT_EQ(ticker->take(), 0U);
}

TEST(Ticker, theEagerOneNeverLetsWait) {
    const auto ticker = Ticker::always(20);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(isReadable(*ticker, 0ms));
        EXPECT_EQ(ticker->take(), 20U);
    }
}

}  // namespace
}  // namespace bonkora::detector
