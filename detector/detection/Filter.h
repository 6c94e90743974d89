// Filter: second-order Butterworth low-pass or high-pass for one signal. One thread.
#pragma once

#include <array>

namespace bonkora::detector {

class Filter {
  public:
    Filter() = default;  // lets everything through

    // `cutoff` and `rate` in Hz. A cutoff of half the rate or more cannot be built: the low-pass
    // then lets everything through, the high-pass the upper end of the band.
    static Filter highPass(double cutoff, double rate);
    static Filter lowPass(double cutoff, double rate);

    float operator()(float input) {
        // Transposed direct form II: two states, and numerically quiet.
        // In utter silence the states would decay to denormal numbers, with which processors are
        // slow; the tiny offset keeps them above.
        const double x = static_cast<double>(input) + 1e-20;
        const double y = b0 * x + state1;
        state1 = b1 * x - a1 * y + state2;
        state2 = b2 * x - a2 * y;
        return static_cast<float>(y);
    }

    // b0, b1, b2, a1, a2.
    std::array<double, 5> coefficients() const { return {b0, b1, b2, a1, a2}; }

  private:
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
    double state1 = 0.0;
    double state2 = 0.0;
};

}  // namespace bonkora::detector
