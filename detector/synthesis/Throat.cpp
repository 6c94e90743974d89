#include "detector/synthesis/Throat.h"

#include <cmath>
#include <numbers>

namespace bonkora::detector::synthesis {

namespace {

constexpr double tau = 2.0 * std::numbers::pi;

// Even numbers from -1 to 1, the same on every machine (a linear congruential generator).
class Noise {
  public:
    explicit Noise(std::uint32_t seed) : state(seed * 2654435761U + 1U) {}

    double next() {
        state = state * 1664525U + 1013904223U;
        return static_cast<double>(state >> 8U) / 8388608.0 - 1.0;
    }

  private:
    std::uint32_t state;
};

// One resonance: a pole pair whose gain at 0 Hz is 1.
class Resonance {
  public:
    void tune(double hertz, double bandwidth) {
        const double radius = std::exp(-std::numbers::pi * bandwidth / sampleRate);
        b = 2.0 * radius * std::cos(tau * hertz / sampleRate);
        c = -radius * radius;
        a = 1.0 - b - c;
    }

    double operator()(double input) {
        const double output = a * input + b * last + c * lastButOne;
        lastButOne = last;
        last = output;
        return output;
    }

  private:
    double a = 1.0;
    double b = 0.0;
    double c = 0.0;
    double last = 0.0;
    double lastButOne = 0.0;
};

// The flow through the vocal folds over one cycle: they open slowly, close quickly, stay closed.
double flow(double phase) {
    constexpr double opening = 0.4;
    constexpr double closing = 0.16;
    if (phase < opening) {
        return 0.5 * (1.0 - std::cos(std::numbers::pi * phase / opening));
    }
    if (phase < opening + closing) {
        return std::cos(0.5 * std::numbers::pi * (phase - opening) / closing);
    }
    return 0.0;
}

}  // namespace

Waveform speak(const Utterance& utterance) {
    Waveform sound(static_cast<std::size_t>(utterance.duration * sampleRate));
    Noise noise{utterance.seed};
    std::array<Resonance, 4> mouth;
    double phase = 0.0;
    double jitter = 1.0;
    double lastFlow = 0.0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double time = static_cast<double>(i) / sampleRate;
        if (i % 32 == 0) {  // the mouth moves slowly
            const double opening = utterance.opening.at(time);
            for (std::size_t n = 0; n < mouth.size(); ++n) {
                const double hertz =
                    utterance.from[n] + opening * (utterance.to[n] - utterance.from[n]);
                mouth[n].tune(hertz * utterance.throat, 60.0 + 0.04 * hertz);
            }
        }
        const double swing = 1.0 + utterance.vibrato * std::sin(tau * 5.5 * time);
        phase += utterance.pitch.at(time) * swing * jitter / sampleRate;
        if (phase >= 1.0) {
            phase -= std::floor(phase);
            jitter = 1.0 + utterance.roughness * noise.next();
        }
        const double opened = flow(phase);
        const double breath = utterance.breath.at(time);
        const double hiss = 0.25 * breath * noise.next() * (0.3 + opened);
        double sample = (1.0 - breath) * 4.0 * (opened - lastFlow) + hiss;
        lastFlow = opened;
        for (Resonance& resonance : mouth) {
            sample = resonance(sample);
        }
        sound[i] = sample * utterance.loudness.at(time);
    }
    return sound;
}

}  // namespace bonkora::detector::synthesis
