// Virtual time for the tests: a clock that moves only when told, and the queues that live by it.
// Each due task runs at its own due time, equal times in the order of submission.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Queues.h"

namespace bonkora::test {

using std::chrono::milliseconds;

class VirtualTime {
  public:
    using Task = std::function<void()>;

    milliseconds now() const {
        const std::lock_guard lock(mutex);
        return time;
    }

    // Any thread, like the queues it stands behind.
    void submit(milliseconds delay, Task task) {
        const std::lock_guard lock(mutex);
        tasks.emplace(time + delay, std::move(task));
        submitted.notify_all();
    }

    // Runs what is due now, and what that submits for now.
    void runDue() { advance(milliseconds(0)); }

    // Steps to each task that becomes due within `duration`, and then to its end.
    void advance(milliseconds duration) {
        const milliseconds end = now() + duration;
        while (Task task = takeNext(end)) {
            task();
        }
        const std::lock_guard lock(mutex);
        time = end;
    }

    // Runs what is due now, and what other threads submit for now, until `holds` does. For real
    // children: no time passes but theirs. False if that takes more than ten seconds.
    bool runUntil(const std::function<bool()>& holds) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        for (runDue(); !holds(); runDue()) {
            std::unique_lock lock(mutex);
            if (!submitted.wait_until(lock, deadline, [this] {
                    return !tasks.empty() && tasks.begin()->first <= time;
                })) {
                return false;
            }
        }
        return true;
    }

    std::size_t pending() const {
        const std::lock_guard lock(mutex);
        return tasks.size();
    }

  private:
    Task takeNext(milliseconds end) {
        const std::lock_guard lock(mutex);
        if (tasks.empty() || tasks.begin()->first > end) {
            return nullptr;
        }
        time = std::max(time, tasks.begin()->first);
        Task task = std::move(tasks.begin()->second);
        tasks.erase(tasks.begin());
        return task;
    }

    mutable std::mutex mutex;
    std::condition_variable submitted;
    milliseconds time{0};
    std::multimap<milliseconds, Task> tasks;
};

class ManualMainQueue final : public platform::MainQueue {
  public:
    explicit ManualMainQueue(std::shared_ptr<VirtualTime> theTime) : time(std::move(theTime)) {}
    void async(Task task) override { time->submit(milliseconds(0), std::move(task)); }
    void asyncAfter(milliseconds delay, Task task) override {
        time->submit(delay, std::move(task));
    }

  private:
    const std::shared_ptr<VirtualTime> time;
};

class ManualGlobalQueue final : public platform::GlobalQueue {
  public:
    explicit ManualGlobalQueue(std::shared_ptr<VirtualTime> theTime) : time(std::move(theTime)) {}
    void asyncAfter(milliseconds delay, Task task) override {
        time->submit(delay, std::move(task));
    }

  private:
    const std::shared_ptr<VirtualTime> time;
};

}  // namespace bonkora::test
