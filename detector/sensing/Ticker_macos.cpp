#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "detector/sensing/Ticker.h"
#include "platform/WakePipe.h"

namespace bonkora::detector {

namespace {

// A thread that counts, for want of a timer with a descriptor.
class RealTicker final : public Ticker {
  public:
    RealTicker(std::unique_ptr<platform::WakePipe> theWake, std::chrono::nanoseconds thePeriod)
        : wake(std::move(theWake)), period(thePeriod), counter([this] { count(); }) {}
    RealTicker(const RealTicker&) = delete;
    RealTicker& operator=(const RealTicker&) = delete;
    ~RealTicker() override {
        {
            const std::lock_guard lock{mutex};
            stopping = true;
        }
        stopped.notify_one();
        counter.join();
    }

    int descriptor() const override { return wake->descriptor(); }

    std::uint64_t take() override {
        const std::lock_guard lock{mutex};
        wake->clear();
        return std::exchange(due, 0);
    }

  private:
    using Clock = std::chrono::steady_clock;

    void count() {
        std::unique_lock lock{mutex};
        auto next = Clock::now() + period;
        while (!stopped.wait_until(lock, next, [this] { return stopping; })) {
            const auto passed = (Clock::now() - next) / period + 1;
            next += passed * period;
            due += static_cast<std::uint64_t>(passed);
            wake->set();
        }
    }

    const std::unique_ptr<platform::WakePipe> wake;
    const std::chrono::nanoseconds period;
    std::mutex mutex;
    std::condition_variable stopped;
    bool stopping = false;
    std::uint64_t due = 0;
    std::thread counter;  // the last member: it uses all others
};

}  // namespace

std::unique_ptr<Ticker> Ticker::every(std::chrono::nanoseconds period) {
    auto wake = platform::WakePipe::make();
    if (!wake) {
        return nullptr;
    }
    return std::make_unique<RealTicker>(std::move(wake), period);
}

}  // namespace bonkora::detector
