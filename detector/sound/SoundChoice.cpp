#include "detector/sound/SoundChoice.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

namespace bonkora::detector {

namespace {

class ChanceChoice final : public SoundChoice {
  public:
    explicit ChanceChoice(std::uint32_t seed) : random(seed) {}

    std::size_t next(std::size_t count, double /*time*/) override {
        if (!last || *last >= count || count == 1) {
            last = below(count);
        } else {
            // One of the others: those from the last one on move up by one.
            const auto other = below(count - 1);
            last = other < *last ? other : other + 1;
        }
        return *last;
    }

  private:
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>{0, limit - 1}(random);
    }

    std::minstd_rand random;
    std::optional<std::size_t> last;
};

// Every knock excites by one step, and the excitement fades.
class KeenChoice final : public SoundChoice {
  public:
    std::size_t next(std::size_t count, double time) override {
        constexpr double calmingTime = 5.0;  // s, to 1/e
        // A time that falls, such as that of another sensor, calms nobody and excites nobody.
        excitement *= std::exp(-std::max(0.0, time - lastTime) / calmingTime);
        lastTime = time;
        const double step = std::min(excitement + 0.5, static_cast<double>(count - 1));
        excitement += 1.0;
        return static_cast<std::size_t>(step);
    }

  private:
    double excitement = 0.0;
    double lastTime = 0.0;
};

class CircleChoice final : public SoundChoice {
  public:
    std::size_t next(std::size_t count, double /*time*/) override { return position++ % count; }

  private:
    std::size_t position = 0;
};

}  // namespace

std::unique_ptr<SoundChoice> SoundChoice::of(SoundSet set, std::uint32_t seed) {
    switch (set) {
        case SoundSet::sexy:
            return std::make_unique<KeenChoice>();
        case SoundSet::halo:
            return std::make_unique<CircleChoice>();
        case SoundSet::pain:
        case SoundSet::custom:
            break;
    }
    return std::make_unique<ChanceChoice>(seed);
}

}  // namespace bonkora::detector
