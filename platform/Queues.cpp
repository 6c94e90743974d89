#include "platform/Queues.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace bonkora::platform {
namespace {

using Clock = std::chrono::steady_clock;

struct Pending {
    std::mutex mutex;
    std::condition_variable changed;
    std::multimap<Clock::time_point, GlobalQueue::Task> tasks;  // equal times in order of insertion
    bool hasWorker = false;
};

void work(const std::shared_ptr<Pending>& pending) {
    std::unique_lock lock(pending->mutex);
    while (!pending->tasks.empty()) {
        const auto due = pending->tasks.begin()->first;
        if (Clock::now() < due) {
            pending->changed.wait_until(lock, due);
            continue;
        }
        const auto task = std::move(pending->tasks.begin()->second);
        pending->tasks.erase(pending->tasks.begin());
        lock.unlock();
        task();
        lock.lock();
    }
    pending->hasWorker = false;
}

class RealGlobalQueue final : public GlobalQueue {
  public:
    void asyncAfter(std::chrono::milliseconds delay, Task task) override {
        const std::lock_guard lock(pending->mutex);
        pending->tasks.emplace(Clock::now() + delay, std::move(task));
        if (pending->hasWorker) {
            pending->changed.notify_one();
            return;
        }
        try {
            // Detached: the program's end does not wait for it.
            std::thread(work, pending).detach();
            pending->hasWorker = true;
        } catch (const std::system_error&) {
            // The system gives no thread now: the task waits for the next call.
        }
    }

  private:
    const std::shared_ptr<Pending> pending = std::make_shared<Pending>();
};

}  // namespace

std::shared_ptr<GlobalQueue> GlobalQueue::real() {
    return std::make_shared<RealGlobalQueue>();
}

Backlog::Share Backlog::add(std::size_t size) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return isClosed || used == 0 || used + size <= capacity; });
    used += size;
    return {nullptr, [self = shared_from_this(), size](void*) { self->remove(size); }};
}

void Backlog::remove(std::size_t size) {
    const std::lock_guard lock(mutex);
    used -= size;
    changed.notify_all();
}

void Backlog::close() {
    const std::lock_guard lock(mutex);
    isClosed = true;
    changed.notify_all();
}

}  // namespace bonkora::platform
