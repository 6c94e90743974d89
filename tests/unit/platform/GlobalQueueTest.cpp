#include "platform/GlobalQueue.h"

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>

namespace bonkora::platform {
namespace {

using namespace std::chrono_literals;

TEST(GlobalQueue, runsATaskOffTheCallersThreadAndNotBeforeItIsDue) {
    const auto queue = GlobalQueue::real();
    std::promise<std::pair<std::thread::id, std::chrono::steady_clock::time_point>> ran;
    const auto before = std::chrono::steady_clock::now();
    queue->asyncAfter(20ms, [&] {
        ran.set_value({std::this_thread::get_id(), std::chrono::steady_clock::now()});
    });
    const auto [thread, time] = ran.get_future().get();
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_GE(time - before, 20ms);
}

TEST(GlobalQueue, anEarlierTaskOvertakesALaterOne) {
    const auto queue = GlobalQueue::real();
    std::promise<void> done;
    std::string order;
    queue->asyncAfter(60ms, [&] {
        order += "late";
        done.set_value();
    });
    queue->asyncAfter(5ms, [&] { order += "early "; });
    done.get_future().get();
    EXPECT_EQ(order, "early late");
}

TEST(GlobalQueue, worksAgainAfterItWasEmpty) {
    const auto queue = GlobalQueue::real();
    for (int round = 0; round < 100; ++round) {
        std::promise<void> done;
        queue->asyncAfter(0ms, [&] { done.set_value(); });
        done.get_future().get();
    }
}

TEST(GlobalQueue, itsTasksOutliveIt) {
    std::promise<void> done;
    GlobalQueue::real()->asyncAfter(5ms, [&] { done.set_value(); });
    done.get_future().get();
}

}  // namespace
}  // namespace bonkora::platform
