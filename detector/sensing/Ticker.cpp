#include "detector/sensing/Ticker.h"

#include <utility>

#include "platform/WakePipe.h"

namespace bonkora::detector {

namespace {

class EagerTicker final : public Ticker {
  public:
    EagerTicker(std::unique_ptr<platform::WakePipe> theWake, std::uint64_t thePeriods)
        : wake(std::move(theWake)), periods(thePeriods) {
        wake->set();  // and never cleared
    }

    int descriptor() const override { return wake->descriptor(); }
    std::uint64_t take() override { return periods; }

  private:
    const std::unique_ptr<platform::WakePipe> wake;
    const std::uint64_t periods;
};

}  // namespace

std::unique_ptr<Ticker> Ticker::always(std::uint64_t periods) {
    auto wake = platform::WakePipe::make();
    if (!wake) {
        return nullptr;
    }
    return std::make_unique<EagerTicker>(std::move(wake), periods);
}

}  // namespace bonkora::detector
