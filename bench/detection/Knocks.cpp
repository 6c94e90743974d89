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

// What hits, and for how long it pushes: a knuckle is hard, a flat hand also slaps the air.
struct Hand {
    double shortest;  // s
    double longest;
    bool isFlat;
};
constexpr std::array hands{Hand{0.0008, 0.003, false},  // knuckle
                           Hand{0.002, 0.007, true},    // palm
                           Hand{0.003, 0.008, false}};  // fist

// What is hit: its modes beside the palm rest's.
struct Place {
    double pitch;
    double fade;
};
constexpr std::array places{Place{1.2, 1.0},    // lid
                            Place{1.0, 0.7},    // palm rest
                            Place{0.65, 1.5}};  // desk

std::vector<Mode> modesOf(SensorKind kind, const Place& place, Random& random) {
    // The low modes carry a blow, the high ones its click.
    const auto mode = [&](double hertz, double fade, double least, double most) {
        return Mode{hertz * place.pitch * random.even(0.75, 1.33),
                    fade * place.fade * random.even(0.75, 1.33), random.even(least, most)};
    };
    if (kind == SensorKind::microphone) {
        return {mode(95.0, 0.035, 0.5, 1.0),   mode(190.0, 0.025, 0.5, 1.0),
                mode(420.0, 0.012, 0.2, 0.7),  mode(950.0, 0.006, 0.1, 0.5),
                mode(2400.0, 0.003, 0.1, 0.4), mode(5200.0, 0.002, 0.05, 0.3)};
    }
    return {mode(28.0, 0.040, 0.2, 0.5), mode(75.0, 0.018, 0.5, 1.0), mode(160.0, 0.008, 0.3, 0.8)};
}

// The modes' answer to a half-sine push that comes `late` s after a reading, by the exact recursion
// of a damped oscillator.
std::vector<double> answerOf(const std::vector<Mode>& modes, double pushSeconds, double late,
                             double rate) {
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
    answer.insert(answer.begin(), static_cast<std::size_t>(late * fine), 0.0);
    return rate < fine ? resampled(answer, fine, rate) : answer;
}

// A flat hand drives the air from beneath it: a short burst of noise.
void addSlap(std::vector<double>& answer, double rate, Random& random) {
    double peak = 0.0;
    for (const double value : answer) {
        peak = std::max(peak, std::abs(value));
    }
    const double loudness = peak * random.even(0.05, 0.4);
    const double fade = random.even(0.0015, 0.006);
    for (std::size_t i = 0; i < answer.size(); ++i) {
        answer[i] += loudness * random.normal() * std::exp(-static_cast<double>(i) / (rate * fade));
    }
}

}  // namespace

Impact addKnock(Segment& segment, double time, double force, Random& random) {
    const Hand& hand = hands.at(random.below(hands.size()));
    const Place& place = places.at(random.below(places.size()));
    const bool isSound = segment.kind == SensorKind::microphone;
    // The harder, the shorter.
    const double hardness = std::min(1.0, force) * random.even(0.7, 1.0);
    const double push = hand.longest + (hand.shortest - hand.longest) * hardness;
    const double late = random.even(0.0, 1.0 / segment.rate);  // no blow waits for a reading
    auto answer = answerOf(modesOf(segment.kind, place, random), push, late, segment.rate);
    if (isSound && hand.isFlat) {
        addSlap(answer, segment.rate, random);
    }
    // Where on the case the blow falls changes what arrives by a quarter either way.
    const double gain = force * random.even(0.8, 1.25);
    std::array<double, 3> direction{1.0, 0.0, 0.0};
    if (!isSound) {
        direction = {random.even(-0.4, 0.4), random.even(-0.4, 0.4), 1.0};
    }
    Segment alone{segment.kind, segment.rate, 0.3};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        alone.add(answer, 0.0, gain * direction.at(axis), axis);
        segment.add(answer, time, gain * direction.at(axis), axis);
    }
    const double read = std::floor(time * segment.rate) / segment.rate;
    return {read + late, force, strength(alone)};
}

}  // namespace bonkora::bench
