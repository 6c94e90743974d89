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

// Adds on a thread of its own, which may have to wait.
class Adding {
  public:
    Adding(const std::shared_ptr<Backlog>& backlog, std::size_t size)
        : thread([this, backlog, size] { added.put(backlog->add(size)); }) {}
    ~Adding() { thread.join(); }
    Backlog::Share share() { return added.take(); }
    bool hasAdded(std::chrono::milliseconds patience) { return added.isFilledWithin(patience); }

  private:
    test::Box<Backlog::Share> added;
    std::thread thread;
};

TEST(Backlog, whoAddsBeyondItsCapacityWaitsUntilSomethingIsDone) {
    const auto backlog = std::make_shared<Backlog>(10);
    auto first = backlog->add(6);
    auto second = backlog->add(4);
    Adding third(backlog, 5);
    second.reset();  // four are not enough
    EXPECT_FALSE(third.hasAdded(20ms));
    first.reset();
    third.share();
}

TEST(Backlog, isFullWhenItsCapacityIsReachedAndNotBefore) {
    const auto backlog = std::make_shared<Backlog>(10);
    const auto first = backlog->add(6);
    auto second = backlog->add(4);
    Adding third(backlog, 1);
    EXPECT_FALSE(third.hasAdded(20ms));
    second.reset();
    third.share();
}

TEST(Backlog, aShareIsGivenBackWithItsLastHolder) {
    const auto backlog = std::make_shared<Backlog>(10);
    auto share = backlog->add(10);
    auto copy = share;
    share.reset();
    Adding next(backlog, 1);
    EXPECT_FALSE(next.hasAdded(20ms));
    copy.reset();
    next.share();
}

TEST(Backlog, whereNothingWaitsEverythingFits) {
    const auto backlog = std::make_shared<Backlog>(10);
    const auto share = backlog->add(1000);
}

TEST(Backlog, closingEndsEveryWaitForGood) {
    const auto backlog = std::make_shared<Backlog>(10);
    const auto all = backlog->add(10);
    Adding waiting(backlog, 1);
    backlog->close();
    const auto late = waiting.share();
    const auto later = backlog->add(1000);
}

TEST(Backlog, itsSharesOutliveIt) {
    auto share = std::make_shared<Backlog>(10)->add(3);
    share.reset();
}

}  // namespace
}  // namespace bonkora::platform
