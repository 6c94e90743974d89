#include "bench/detection/Knocks.h"

#include <algorithm>
#include <array>

#include "detector/detection/Filter.h"
#include "detector/detection/Tuning.h"

namespace bonkora::bench {

namespace {

using detector::Filter;
using detector::SensorKind;

// What the detector would measure of this signal alone.
double strength(const Segment& alone) {
    const auto tuning = detector::tuningFor(alone.kind, alone.rate);
    std::array<Filter, 3> high;
    high.fill(Filter::highPass(tuning.highPass, alone.rate));
    auto low = Filter::lowPass(tuning.lowPass, alone.rate);
    const auto first = alone.frames.front();
    float peak = 0.0F;
    if (alone.kind == SensorKind::microphone) {
        for (const auto& frame : alone.frames) {
            peak = std::max(peak, std::abs(low(high[0](frame[0]))));
        }
        return static_cast<double>(peak);
    }
    for (const auto& frame : alone.frames) {
        float square = 0.0F;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const float value = high.at(axis)(frame.at(axis) - first.at(axis));
            square += value * value;
        }
        peak = std::max(peak, std::sqrt(square));
    }
    return static_cast<double>(peak);
}

struct Mode {
    double hertz;
    double fade;  // s, to 1/e
    double part;
};

std::vector<Mode> modesOf(SensorKind kind, Random& random) {
    // Lids, keyboards and tables: the low modes carry a blow, the high ones its click.
    const auto near = [&](double value) { return value * random.even(0.75, 1.33); };
    if (kind == SensorKind::microphone) {
        return {{near(95.0), near(0.035), random.even(0.5, 1.0)},
                {near(190.0), near(0.025), random.even(0.5, 1.0)},
                {near(420.0), near(0.012), random.even(0.2, 0.7)},
                {near(950.0), near(0.006), random.even(0.1, 0.5)},
                {near(2400.0), near(0.003), random.even(0.1, 0.4)},
                {near(5200.0), near(0.002), random.even(0.05, 0.3)}};
    }
    return {{near(28.0), near(0.040), random.even(0.2, 0.5)},
            {near(75.0), near(0.018), random.even(0.5, 1.0)},
            {near(160.0), near(0.008), random.even(0.3, 0.8)}};
}

// The modes' answer to a half-sine push, by the exact recursion of a damped oscillator.
std::vector<double> answerOf(const std::vector<Mode>& modes, double pushSeconds, double rate) {
    // Worked out at a rate that follows the push, then taken at the sensor's.
    const double fine = std::max(rate, 24000.0);
    std::vector<double> answer(static_cast<std::size_t>(fine * 0.25));
    const auto push = static_cast<std::size_t>(pushSeconds * fine) + 1;
    for (const Mode& mode : modes) {
        const double radius = std::exp(-1.0 / (mode.fade * fine));
        const double turn = tau * mode.hertz / fine;
        double last = 0.0;
        double lastButOne = 0.0;
        for (std::size_t i = 0; i < answer.size(); ++i) {
            const double force =
                i < push ? std::sin(0.5 * tau * static_cast<double>(i) / static_cast<double>(push))
                         : 0.0;
            // Scaled so that a push much shorter than the mode's period gives each the same.
            const double value = 2.0 * radius * std::cos(turn) * last -
                                 radius * radius * lastButOne +
                                 std::sin(turn) * force / static_cast<double>(push);
            lastButOne = last;
            last = value;
            answer[i] += mode.part * value;
        }
    }
    return rate < fine ? resampled(answer, fine, rate) : answer;
}

Impact addBlow(Segment& segment, double time, const std::vector<double>& sound, double gain,
               double force, Random* random) {
    Segment alone{segment.kind, segment.rate, 0.3};
    std::array<double, 3> direction{1.0, 0.0, 0.0};
    if (segment.kind == SensorKind::accelerometer && random != nullptr) {
        direction = {random->even(-0.4, 0.4), random->even(-0.4, 0.4), 1.0};
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        alone.add(sound, 0.0, gain * direction.at(axis), axis);
        segment.add(sound, time, gain * direction.at(axis), axis);
    }
    return {time, force, strength(alone)};
}

}  // namespace

Impact addKnock(Segment& segment, double time, double force, Random& random) {
    const double hardness = std::min(1.0, force);
    const bool isSound = segment.kind == SensorKind::microphone;
    const double push =
        (isSound ? 0.0035 : 0.008) * (1.0 - 0.6 * hardness) * random.even(0.8, 1.25);
    const auto answer = answerOf(modesOf(segment.kind, random), push, segment.rate);
    // Where on the case the blow falls changes what arrives by a quarter either way.
    return addBlow(segment, time, answer, force * random.even(0.8, 1.25), force, &random);
}

}  // namespace bonkora::bench
