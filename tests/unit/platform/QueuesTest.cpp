#include "platform/Queues.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "tests/support/Box.h"

namespace bonkora::platform {
namespace {

using namespace std::chrono_literals;

TEST(GlobalQueue, runsATaskOffTheCallersThreadAndNotBeforeItIsDue) {
    const auto queue = GlobalQueue::real();
    test::Box<std::pair<std::thread::id, std::chrono::steady_clock::time_point>> ran;
    const auto before = std::chrono::steady_clock::now();
    queue->asyncAfter(20ms, [&] {
        ran.put({std::this_thread::get_id(), std::chrono::steady_clock::now()});
    });
    const auto [thread, time] = ran.take();
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_GE(time - before, 20ms);
}

TEST(GlobalQueue, anEarlierTaskOvertakesALaterOne) {
    const auto queue = GlobalQueue::real();
    test::Box<bool> done;
    std::string order;
    queue->asyncAfter(60ms, [&] {
        order += "late";
        done.put(true);
    });
    queue->asyncAfter(5ms, [&] { order += "early "; });
    done.take();
    EXPECT_EQ(order, "early late");
}

TEST(GlobalQueue, worksAgainAfterItWasEmpty) {
    const auto queue = GlobalQueue::real();
    for (int round = 0; round < 100; ++round) {
        test::Box<bool> done;
        queue->asyncAfter(0ms, [&] { done.put(true); });
        done.take();
    }
}

TEST(GlobalQueue, itsTasksOutliveIt) {
    test::Box<bool> done;
    GlobalQueue::real()->asyncAfter(5ms, [&] { done.put(true); });
    done.take();
}

}  // namespace
}  // namespace bonkora::platform
