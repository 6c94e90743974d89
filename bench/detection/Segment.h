// Segment: some seconds of a sensor's signal that are being put together. Values; one thread.
#pragma once

#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

#include "detector/sensing/Sensor.h"

namespace bonkora::bench {

inline constexpr double tau = 2.0 * std::numbers::pi;

class Random {
  public:
    explicit Random(unsigned seed) : engine(seed) {}

    double even(double low, double high) {
        return std::uniform_real_distribution<double>{low, high}(engine);
    }
    // Evenly in the logarithm: as many between 1 and 2 as between 2 and 4.
    double scaled(double low, double high) { return std::exp(even(std::log(low), std::log(high))); }
    double normal() { return gauss(engine); }
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>{0, limit - 1}(engine);
    }

  private:
    std::mt19937 engine;
    std::normal_distribution<double> gauss;
};

struct Segment {
    Segment(detector::SensorKind theKind, double theRate, double seconds)
        : kind(theKind),
          rate(theRate),
          frames(static_cast<std::size_t>(theRate * seconds),
                 detector::Frame{0.0F, 0.0F,
                                 theKind == detector::SensorKind::microphone ? 0.0F : 1.0F}) {}

    double seconds() const { return static_cast<double>(frames.size()) / rate; }

    // Adds `sound` from `time` s on; of an accelerometer to the axis `axis`.
    void add(const std::vector<double>& sound, double time, double gain, std::size_t axis = 0) {
        const auto begin = static_cast<std::size_t>(std::max(0.0, time) * rate);
        for (std::size_t i = 0; i < sound.size() && begin + i < frames.size(); ++i) {
            frames[begin + i][axis] += static_cast<float>(gain * sound[i]);
        }
    }

    // What the converter does to a signal that is too strong for it.
    void clip() {
        const float limit = kind == detector::SensorKind::microphone ? 1.0F : 16.0F;
        for (detector::Frame& frame : frames) {
            for (float& value : frame) {
                value = std::min(std::max(value, -limit), limit);
            }
        }
    }

    const detector::SensorKind kind;
    const double rate;
    std::vector<detector::Frame> frames;
};

// `sound` at another rate, in straight lines from sample to sample.
inline std::vector<double> resampled(const std::vector<double>& sound, double from, double to) {
    const double step = from / to;
    std::vector<double> result(static_cast<std::size_t>(static_cast<double>(sound.size()) / step));
    for (std::size_t i = 0; i < result.size(); ++i) {
        const double place = static_cast<double>(i) * step;
        const auto index = static_cast<std::size_t>(place);
        const double next = index + 1 < sound.size() ? sound[index + 1] : 0.0;
        const double part = place - static_cast<double>(index);
        result[i] = sound[index] + part * (next - sound[index]);
    }
    return result;
}

}  // namespace bonkora::bench
