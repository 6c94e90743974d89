#include <sys/timerfd.h>
#include <unistd.h>

#include <utility>

#include "detector/sensing/Ticker.h"
#include "platform/Descriptor.h"

namespace bonkora::detector {

namespace {

class RealTicker final : public Ticker {
  public:
    explicit RealTicker(platform::UniqueDescriptor theTimer) : timer(std::move(theTimer)) {}

    int descriptor() const override { return timer.get(); }

    std::uint64_t take() override {
        std::uint64_t expirations = 0;
        const auto count = ::read(timer.get(), &expirations, sizeof expirations);
        return count == static_cast<ssize_t>(sizeof expirations) ? expirations : 0;
    }

  private:
    const platform::UniqueDescriptor timer;
};

}  // namespace

std::unique_ptr<Ticker> Ticker::every(std::chrono::nanoseconds period) {
    platform::UniqueDescriptor timer{::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)};
    constexpr std::int64_t second = 1'000'000'000;
    const timespec step{period.count() / second, period.count() % second};
    const itimerspec setting{step, step};
    if (!timer || ::timerfd_settime(timer.get(), 0, &setting, nullptr) != 0) {
        return nullptr;
    }
    return std::make_unique<RealTicker>(std::move(timer));
}

}  // namespace bonkora::detector
