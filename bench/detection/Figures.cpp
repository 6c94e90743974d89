#include "bench/detection/Figures.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace bonkora::bench {

namespace {

template <typename T>
void append(std::vector<T>& to, const std::vector<T>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

std::vector<double> ranks(const std::vector<double>& values) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    std::vector<double> result(values.size());
    for (std::size_t begin = 0; begin < order.size();) {
        std::size_t end = begin + 1;
        while (end < order.size() && values[order[end]] == values[order[begin]]) {
            ++end;
        }
        for (std::size_t i = begin; i < end; ++i) {
            result[order[i]] = 0.5 * static_cast<double>(begin + end - 1);
        }
        begin = end;
    }
    return result;
}

}  // namespace

void Figures::add(const Figures& other) {
    expected += other.expected;
    found += other.found;
    weak += other.weak;
    weakFound += other.weakFound;
    falseAlarms += other.falseAlarms;
    seconds += other.seconds;
    append(forces, other.forces);
    append(amplitudes, other.amplitudes);
    append(delays, other.delays);
}

Figures compare(const std::vector<Impact>& impacts, const std::vector<detector::Knock>& knocks,
                const Segment& segment, double threshold) {
    constexpr double tolerance = 0.05;  // s
    Figures figures;
    figures.seconds = segment.seconds();
    std::vector<bool> used(knocks.size());
    for (const Impact& impact : impacts) {
        const bool isStrong = impact.amplitude >= 2.0 * threshold;
        const bool isWeak = !isStrong && impact.amplitude >= threshold;
        figures.expected += isStrong ? 1 : 0;
        figures.weak += isWeak ? 1 : 0;
        for (std::size_t i = 0; i < knocks.size(); ++i) {
            const double time = static_cast<double>(knocks[i].frame) / segment.rate;
            if (used[i] || std::abs(time - impact.time) > tolerance) {
                continue;
            }
            used[i] = true;
            figures.found += isStrong ? 1 : 0;
            figures.weakFound += isWeak ? 1 : 0;
            figures.forces.push_back(impact.force);
            figures.amplitudes.push_back(knocks[i].amplitude);
            figures.delays.push_back(static_cast<double>(knocks[i].decided) / segment.rate -
                                     impact.time);
            break;
        }
    }
    figures.falseAlarms = static_cast<int>(std::count(used.begin(), used.end(), false));
    return figures;
}

double rankCorrelation(const std::vector<double>& a, const std::vector<double>& b) {
    const auto x = ranks(a);
    const auto y = ranks(b);
    const double mean = 0.5 * (static_cast<double>(x.size()) - 1.0);
    double xy = 0.0;
    double xx = 0.0;
    double yy = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        xy += (x[i] - mean) * (y[i] - mean);
        xx += (x[i] - mean) * (x[i] - mean);
        yy += (y[i] - mean) * (y[i] - mean);
    }
    return xx > 0.0 && yy > 0.0 ? xy / std::sqrt(xx * yy) : 0.0;
}

double quantile(std::vector<double> values, double part) {
    if (values.empty()) {
        return 0.0;
    }
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

}  // namespace bonkora::bench
