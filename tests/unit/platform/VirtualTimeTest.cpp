#include <gtest/gtest.h>

#include <string>

#include "tests/support/ManualQueue.h"

namespace bonkora::test {
namespace {

TEST(VirtualTime, runsEachTaskAtItsOwnDueTime) {
    const auto time = std::make_shared<VirtualTime>();
    ManualMainQueue queue(time);
    std::vector<milliseconds> times;
    queue.asyncAfter(milliseconds(500), [&] { times.push_back(time->now()); });
    queue.asyncAfter(milliseconds(300), [&] { times.push_back(time->now()); });
    time->advance(milliseconds(1000));
    EXPECT_EQ(times, (std::vector{milliseconds(300), milliseconds(500)}));
    EXPECT_EQ(time->now(), milliseconds(1000));
}

TEST(VirtualTime, runsEqualTimesInTheOrderOfSubmission) {
    const auto time = std::make_shared<VirtualTime>();
    ManualMainQueue queue(time);
    std::string order;
    queue.asyncAfter(milliseconds(5), [&] { order += 'a'; });
    queue.asyncAfter(milliseconds(5), [&] { order += 'b'; });
    queue.asyncAfter(milliseconds(5), [&] { order += 'c'; });
    time->advance(milliseconds(5));
    EXPECT_EQ(order, "abc");
}

TEST(VirtualTime, aTaskSubmittedByATaskRunsWhenItIsDueWithinTheSameStep) {
    const auto time = std::make_shared<VirtualTime>();
    ManualMainQueue queue(time);
    bool ran = false;
    queue.asyncAfter(milliseconds(5),
                     [&] { queue.asyncAfter(milliseconds(5), [&] { ran = true; }); });
    time->advance(milliseconds(9));
    EXPECT_FALSE(ran);
    time->advance(milliseconds(1));
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace bonkora::test
