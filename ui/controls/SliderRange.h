// SliderRange: the values that a slider can take: `first`, `first + step`, ... over `denominator`.
// Whole numbers divided once, because adding 0.005 to 0.01 again and again misses a third of the
// decimals by one bit. Values; any thread.
#pragma once

#include <algorithm>
#include <cmath>

namespace bonkora {

struct SliderRange {
    int first;
    int step;
    int lastTick;
    int denominator = 1;

    // Of a tick from 0 to lastTick.
    constexpr double value(int tick) const {
        return static_cast<double>(first + step * tick) / denominator;
    }
    constexpr double lowest() const { return value(0); }
    constexpr double highest() const { return value(lastTick); }
    constexpr double stepSize() const { return static_cast<double>(step) / denominator; }

    // Whose value is nearest; the first for what is no number.
    int nearestTick(double wanted) const {
        const double ticks = (wanted * denominator - first) / step;
        return ticks > 0 ? static_cast<int>(std::lround(std::min(ticks, double{1.0} * lastTick)))
                         : 0;
    }
};

}  // namespace bonkora
