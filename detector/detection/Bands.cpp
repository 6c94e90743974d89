#include "detector/detection/Bands.h"

#include <algorithm>
#include <cmath>

namespace bonkora::detector {

namespace {

constexpr std::array<double, Bands::count + 1> edges{50.0,  100.0,  160.0,  250.0,  400.0,
                                                     630.0, 1000.0, 1500.0, 2300.0, 3500.0};  // Hz
constexpr double lowestRate = 12000.0;  // Hz to which faster sound is decimated
constexpr double softCutoff = 4000.0;   // Hz
constexpr std::array<double, Bands::averages> times{0.06, 0.25, 1.0};  // s
constexpr float silence = 1e-9F;   // mean square, 90 dB below full scale
constexpr float deepest = -60.0F;  // dB below the strongest
constexpr std::size_t frameBlocks = 2;

std::size_t decimationOf(double rate) {
    return std::max<std::size_t>(1, static_cast<std::size_t>(rate / lowestRate));
}

float decibels(float energy) {
    return 10.0F * std::log10(energy + silence);
}

}  // namespace

Bands::Bands(double rate, double blockSeconds)
    : decimation(decimationOf(rate)), history(frames * frameBlocks) {
    const double low = rate / static_cast<double>(decimation);
    if (decimation > 1) {
        soften.fill(Filter::lowPass(softCutoff, rate));
    }
    for (std::size_t band = 0; band < lanes; ++band) {
        const std::size_t mine = std::min(band, count - 1);
        const std::array<Filter, 2> filters{Filter::highPass(edges.at(mine), low),
                                            Filter::lowPass(edges.at(mine + 1), low)};
        for (std::size_t i = 0; i < 2; ++i) {
            const auto& [b0, b1, b2, a1, a2] = filters.at(i).coefficients();
            stages.at(i).b0.at(band) = static_cast<float>(b0);
            stages.at(i).b1.at(band) = static_cast<float>(b1);
            stages.at(i).b2.at(band) = static_cast<float>(b2);
            stages.at(i).a1.at(band) = static_cast<float>(a1);
            stages.at(i).a2.at(band) = static_cast<float>(a2);
        }
    }
    for (std::size_t i = 0; i < averages; ++i) {
        steps.at(i) = static_cast<float>(1.0 - std::exp(-blockSeconds / times.at(i)));
    }
}

void Bands::split(float sample) {
    // The tiny offset keeps the states away from the slow numbers near 0 in utter silence.
    constexpr float tiny = 1e-12F;
    Levels value;
    value.fill(sample);
    for (Stage& stage : stages) {
        for (std::size_t i = 0; i < lanes; ++i) {
            value[i] += tiny;
            const float y = stage.b0[i] * value[i] + stage.state1[i];
            stage.state1[i] = stage.b1[i] * value[i] - stage.a1[i] * y + stage.state2[i];
            stage.state2[i] = stage.b2[i] * value[i] - stage.a2[i] * y;
            value[i] = y;
        }
    }
    for (std::size_t i = 0; i < lanes; ++i) {
        energy[i] += value[i] * value[i];
    }
    ++samples;
}

void Bands::endBlock() {
    newest = (newest + 1) % history.size();
    Levels& block = history[newest];  // still the oldest
    for (std::size_t i = 0; i < averages; ++i) {
        for (std::size_t band = 0; band < lanes; ++band) {
            slow[i][band] += steps[i] * (block[band] - slow[i][band]);
        }
    }
    const float share = samples > 0 ? 1.0F / static_cast<float>(samples) : 0.0F;
    for (std::size_t band = 0; band < lanes; ++band) {
        block[band] = energy[band] * share;
    }
    energy = {};
    samples = 0;
}

Bands::Features Bands::features() const {
    Features result{};
    float strongest = -1e3F;
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const auto& first = history[(newest + 1 + frameBlocks * frame) % history.size()];
        const auto& second = history[(newest + 2 + frameBlocks * frame) % history.size()];
        for (std::size_t band = 0; band < count; ++band) {
            const float level = decibels(0.5F * (first[band] + second[band]));
            result[frame * count + band] = level;
            strongest = std::max(strongest, level);
        }
    }
    for (std::size_t i = 0; i < averages; ++i) {
        for (std::size_t band = 0; band < count; ++band) {
            result[(frames + i) * count + band] = decibels(slow[i][band]);
        }
    }
    for (float& value : result) {
        value = std::max(value - strongest, deepest) / 30.0F + 1.0F;
    }
    return result;
}

double Bands::loudness() const {
    float sum = 0.0F;
    for (std::size_t band = 0; band < count; ++band) {
        sum += slow.back()[band];
    }
    return std::sqrt(static_cast<double>(sum));
}

}  // namespace bonkora::detector
