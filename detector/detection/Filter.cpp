#include "detector/detection/Filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace bonkora::detector {

namespace {

constexpr double highestPart = 0.45;  // of the rate, below its half

}  // namespace

// The analogue 1 / (s^2 + sqrt(2) s + 1) through the bilinear transform, cutoff prewarped.
Filter Filter::lowPass(double cutoff, double rate) {
    Filter filter;
    if (cutoff > highestPart * rate) {
        return filter;
    }
    const double k = std::tan(std::numbers::pi * cutoff / rate);
    const double norm = 1.0 / (1.0 + std::numbers::sqrt2 * k + k * k);
    filter.b0 = k * k * norm;
    filter.b1 = 2.0 * filter.b0;
    filter.b2 = filter.b0;
    filter.a1 = 2.0 * (k * k - 1.0) * norm;
    filter.a2 = (1.0 - std::numbers::sqrt2 * k + k * k) * norm;
    return filter;
}

Filter Filter::highPass(double cutoff, double rate) {
    const double k = std::tan(std::numbers::pi * std::min(cutoff / rate, highestPart));
    const double norm = 1.0 / (1.0 + std::numbers::sqrt2 * k + k * k);
    Filter filter;
    filter.b0 = norm;
    filter.b1 = -2.0 * norm;
    filter.b2 = norm;
    filter.a1 = 2.0 * (k * k - 1.0) * norm;
    filter.a2 = (1.0 - std::numbers::sqrt2 * k + k * k) * norm;
    return filter;
}

}  // namespace bonkora::detector
