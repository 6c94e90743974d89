#include "bench/detection/Backgrounds.h"

#include <algorithm>
#include <array>
#include <utility>

#include "detector/detection/Filter.h"
#include "detector/synthesis/Throat.h"

namespace bonkora::bench {

namespace {

namespace synthesis = detector::synthesis;

// Noise whose power falls with the frequency, as rooms and circuits have it.
void addPinkNoise(Segment& segment, double level, Random& random, std::size_t axis = 0) {
    std::array<double, 3> states{};
    for (auto& frame : segment.frames) {
        const double white = random.normal();
        states[0] = 0.997 * states[0] + 0.030 * white;
        states[1] = 0.95 * states[1] + 0.060 * white;
        states[2] = 0.60 * states[2] + 0.150 * white;
        const double pink = states[0] + states[1] + states[2] + 0.15 * white;
        frame[axis] += static_cast<float>(level * 2.0 * pink);
    }
}

void addWhiteNoise(Segment& segment, double level, Random& random, std::size_t axis) {
    for (auto& frame : segment.frames) {
        frame[axis] += static_cast<float>(level * random.normal());
    }
}

void addTone(Segment& segment, double hertz, double level, Random& random, std::size_t axis = 0) {
    const double phase = random.even(0.0, tau);
    const double sway = random.even(0.1, 0.6);
    for (std::size_t i = 0; i < segment.frames.size(); ++i) {
        const double t = static_cast<double>(i) / segment.rate;
        const double strength = 1.0 + 0.3 * std::sin(tau * sway * t);
        segment.frames[i][axis] +=
            static_cast<float>(level * strength * std::sin(tau * hertz * t + phase));
    }
}

void addRoom(Segment& segment, Random& random) {
    addPinkNoise(segment, random.scaled(0.0003, 0.003), random);
}

void addFan(Segment& segment, Random& random) {
    addPinkNoise(segment, random.scaled(0.002, 0.02), random);
    const double blades = random.even(90.0, 400.0);
    for (const double harmonic : {1.0, 2.0, 3.0}) {
        addTone(segment, blades * harmonic, random.scaled(0.0005, 0.006), random);
    }
}

std::vector<double> ring(double hertz, double fade, double rate, Random& random) {
    std::vector<double> sound(static_cast<std::size_t>(6.0 * fade * rate));
    const double phase = random.even(0.0, tau);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double t = static_cast<double>(i) / rate;
        sound[i] = std::exp(-t / fade) * std::sin(tau * hertz * t + phase);
    }
    return sound;
}

// A key's fall and its return: mostly click, a little of the case below it.
void addKey(Segment& segment, double time, double level, Random& random) {
    for (int i = 0; i < 5; ++i) {
        segment.add(
            ring(random.scaled(700.0, 7000.0), random.scaled(0.001, 0.006), segment.rate, random),
            time + random.even(0.0, 0.004), level * random.even(0.2, 0.6));
    }
    segment.add(ring(random.even(110.0, 300.0), random.even(0.006, 0.02), segment.rate, random),
                time, level * random.even(0.05, 0.3));
}

void addTyping(Segment& segment, Random& random) {
    addRoom(segment, random);
    const double usual = random.scaled(0.01, 0.08);
    for (double t = random.even(0.0, 0.5); t < segment.seconds();) {
        const double level = usual * std::exp(0.35 * random.normal());
        addKey(segment, t, level, random);
        addKey(segment, t + random.even(0.05, 0.12), 0.5 * level, random);
        t += random.even(0.0, 1.0) < 0.06 ? random.even(0.5, 3.0) : random.even(0.06, 0.3);
    }
}

// Syllables of a consonant's burst and a vowel, in words, in sentences.
std::vector<double> sentence(double rate, Random& random) {
    constexpr std::array<synthesis::Vowel, 5> vowels{synthesis::ah, synthesis::eh, synthesis::ee,
                                                     synthesis::oh, synthesis::oo};
    const double pitch = random.scaled(90.0, 260.0);
    const double throat = pitch > 160.0 ? 1.15 : 1.0;
    std::vector<double> speech;
    double time = 0.0;
    const auto syllables = 4 + random.below(12);
    for (std::size_t i = 0; i < syllables; ++i) {
        if (random.even(0.0, 1.0) < 0.7) {  // a plosive or a hiss before the vowel
            const bool plosive = random.even(0.0, 1.0) < 0.6;
            const double length = plosive ? random.even(0.004, 0.03) : random.even(0.05, 0.15);
            synthesis::Utterance hiss;
            hiss.duration = length;
            hiss.pitch = {{{0.0, 100.0}}};
            hiss.breath = {{{0.0, 1.0}}};
            hiss.opening = {{{0.0, 0.0}}};
            hiss.from = {random.even(500.0, 2500.0), 2500.0, 4000.0, 6000.0};
            hiss.loudness = {{{0.0, plosive ? 1.0 : 0.1}, {0.4 * length, 1.0}, {length, 0.0}}};
            hiss.seed = static_cast<std::uint32_t>(random.below(1U << 30U));
            synthesis::mix(speech, synthesis::speak(hiss), time, random.even(0.1, 0.8));
            time += 0.8 * length + (plosive ? random.even(0.0, 0.04) : 0.0);
        }
        const double length = random.even(0.08, 0.28);
        synthesis::Utterance vowel;
        vowel.duration = length;
        const double high = pitch * random.even(0.85, 1.3);
        vowel.pitch = {{{0.0, high}, {length, high * random.even(0.8, 1.05)}}};
        const double rise = random.even(0.008, 0.05);
        vowel.loudness = {{{0.0, 0.0}, {rise, 1.0}, {0.7 * length, 0.7}, {length, 0.0}}};
        vowel.breath = {{{0.0, random.even(0.02, 0.3)}}};
        vowel.opening = {{{0.0, 0.0}, {length, 1.0}}};
        vowel.from = vowels.at(random.below(5));
        vowel.to = vowels.at(random.below(5));
        vowel.throat = throat;
        vowel.roughness = 0.02;
        vowel.seed = static_cast<std::uint32_t>(random.below(1U << 30U));
        synthesis::mix(speech, synthesis::speak(vowel), time, random.even(0.4, 1.0));
        time += length * 0.9 + (random.even(0.0, 1.0) < 0.3 ? random.even(0.02, 0.2) : 0.0);
    }
    synthesis::finish(speech, 1.0);
    return resampled(speech, synthesis::sampleRate, rate);
}

void addSpeech(Segment& segment, Random& random) {
    addRoom(segment, random);
    const double level = random.scaled(0.05, 0.7);
    for (double t = random.even(0.0, 1.0); t < segment.seconds();) {
        const auto words = sentence(segment.rate, random);
        segment.add(words, t, level * random.even(0.5, 1.0));
        t += static_cast<double>(words.size()) / segment.rate + random.even(0.2, 2.0);
    }
}

// One note of a struck or bowed string: harmonics that fade the faster the higher they are.
std::vector<double> note(double hertz, double rise, double fade, double seconds, double rate,
                         Random& random) {
    std::vector<double> sound(static_cast<std::size_t>(seconds * rate));
    for (int harmonic = 1; harmonic <= 8; ++harmonic) {
        const double phase = random.even(0.0, tau);
        for (std::size_t i = 0; i < sound.size(); ++i) {
            const double t = static_cast<double>(i) / rate;
            sound[i] += 0.4 / harmonic * std::min(1.0, t / rise) * std::exp(-t * harmonic / fade) *
                        std::sin(tau * hertz * harmonic * t + phase);
        }
    }
    return sound;
}

std::vector<double> drum(bool low, double rate, Random& random) {
    auto sound = low ? ring(random.even(45.0, 80.0), 0.09, rate, random)
                     : ring(random.even(170.0, 240.0), 0.05, rate, random);
    const double hiss = low ? 0.1 : 0.6;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double t = static_cast<double>(i) / rate;
        sound[i] += hiss * std::exp(-t / (low ? 0.01 : 0.06)) * random.normal();
        sound[i] *= std::min(1.0, t / 0.002);
    }
    return sound;
}

// Chords, a bass and, in half of the pieces, drums.
void addPiece(Segment& segment, Random& random) {
    const double level = random.scaled(0.02, 0.3);
    const double beat = random.even(0.35, 0.7);
    const double rise = random.scaled(0.004, 0.08);
    const double key = random.even(110.0, 220.0);
    const bool hasDrums = random.even(0.0, 1.0) < 0.5;
    constexpr std::array<double, 7> scale{1.0,     9.0 / 8, 5.0 / 4, 4.0 / 3,
                                          3.0 / 2, 5.0 / 3, 15.0 / 8};
    int count = 0;
    for (double t = random.even(0.0, 1.0); t < segment.seconds(); t += beat, ++count) {
        const std::size_t root = random.below(7);
        for (const std::size_t step : {std::size_t{0}, std::size_t{2}, std::size_t{4}}) {
            const double hertz = key * scale.at((root + step) % 7) * (root + step >= 7 ? 2.0 : 1.0);
            segment.add(note(hertz, rise, 0.9, 2.0 * beat, segment.rate, random), t,
                        0.35 * level * random.even(0.6, 1.0));
        }
        segment.add(note(0.5 * key * scale.at(root), 0.01, 0.6, beat, segment.rate, random), t,
                    0.5 * level);
        if (hasDrums) {
            segment.add(drum(count % 2 == 0, segment.rate, random), t, 0.6 * level);
        }
    }
}

// A laptop's own loudspeakers have nothing below 150 to 300 Hz.
void addMusic(Segment& segment, Random& random) {
    Segment piece{segment.kind, segment.rate, segment.seconds()};
    addPiece(piece, random);
    auto loudspeaker = detector::Filter::highPass(random.scaled(150.0, 300.0), segment.rate);
    for (std::size_t i = 0; i < piece.frames.size(); ++i) {
        segment.frames[i][0] += loudspeaker(piece.frames[i][0]);
    }
    addRoom(segment, random);
}

void addLoudMusic(Segment& segment, Random& random) {
    addRoom(segment, random);
    addPiece(segment, random);
}

// Steps, doors far off, a table that somebody leans on: low and slow.
void addRumble(Segment& segment, Random& random) {
    addRoom(segment, random);
    for (double t = random.even(0.0, 3.0); t < segment.seconds(); t += random.even(0.4, 6.0)) {
        auto sound = ring(random.even(12.0, 60.0), random.even(0.05, 0.3), segment.rate, random);
        for (std::size_t i = 0; i < sound.size(); ++i) {
            sound[i] *= std::min(1.0, static_cast<double>(i) / segment.rate / 0.03);
        }
        segment.add(sound, t, random.scaled(0.01, 0.2));
    }
}

void addStillness(Segment& segment, Random& random) {
    const double level = random.scaled(0.0005, 0.004);  // g, of the sensor itself
    for (std::size_t axis = 0; axis < 3; ++axis) {
        addWhiteNoise(segment, level, random, axis);
    }
}

void addTypingFelt(Segment& segment, Random& random) {
    addStillness(segment, random);
    const double usual = random.scaled(0.004, 0.025);  // g
    for (double t = random.even(0.0, 0.5); t < segment.seconds(); t += random.even(0.06, 0.3)) {
        segment.add(ring(random.even(30.0, 90.0), random.even(0.01, 0.03), segment.rate, random), t,
                    usual * std::exp(0.3 * random.normal()), 2);
    }
}

// On a lap, in a train, carried about: sways of half a g, below five a second.
void addMotion(Segment& segment, Random& random) {
    addStillness(segment, random);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (int i = 0; i < 3; ++i) {
            addTone(segment, random.scaled(0.2, 5.0), random.scaled(0.01, 0.3), random, axis);
        }
        addPinkNoise(segment, random.scaled(0.0005, 0.003), random, axis);
    }
}

// A chair is moved, the table pushed: a shudder that swells and fades over half a second.
void addFurniture(Segment& segment, Random& random) {
    addStillness(segment, random);
    for (double t = random.even(0.0, 3.0); t < segment.seconds(); t += random.even(1.0, 6.0)) {
        const double length = random.even(0.3, 1.2);
        const double hertz = random.even(6.0, 22.0);
        std::vector<double> sound(static_cast<std::size_t>(length * segment.rate));
        for (std::size_t i = 0; i < sound.size(); ++i) {
            const double part = static_cast<double>(i) / static_cast<double>(sound.size());
            const double time = static_cast<double>(i) / segment.rate;
            sound[i] = std::pow(std::sin(0.5 * tau * part), 2.0) *
                       (std::sin(tau * hertz * time) + 0.2 * random.normal());
        }
        const double level = random.scaled(0.02, 0.15);
        segment.add(sound, t, level, random.below(3));
    }
}

void addHum(Segment& segment, Random& random) {
    addStillness(segment, random);
    for (int i = 0; i < 3; ++i) {
        addTone(segment, random.even(20.0, 95.0), random.scaled(0.002, 0.02), random,
                random.below(3));
    }
}

}  // namespace

std::vector<Background> microphoneBackgrounds() {
    return {{"quiet room", addRoom},    {"fan", addFan},          {"typing", addTyping},
            {"speech-like", addSpeech}, {"music-like", addMusic}, {"steps, rumble", addRumble}};
}

Background bigLoudspeakers() {
    return {"drums from big loudspeakers", addLoudMusic};
}

std::vector<Background> accelerometerBackgrounds() {
    return {{"lying still", addStillness},
            {"typing", addTypingFelt},
            {"carried, on a lap", addMotion},
            {"furniture moved", addFurniture},
            {"fans, loudspeakers", addHum}};
}

Background recorded(std::string name, std::vector<std::vector<double>> sounds) {
    return {std::move(name), [sounds = std::move(sounds)](Segment& segment, Random& random) {
                addRoom(segment, random);
                for (double t = random.even(0.0, 1.0); t < segment.seconds();) {
                    const auto& sound = sounds[random.below(sounds.size())];
                    double peak = 1e-6;
                    for (const double value : sound) {
                        peak = std::max(peak, std::abs(value));
                    }
                    segment.add(sound, t, random.scaled(0.05, 0.7) / peak);
                    t += static_cast<double>(sound.size()) / segment.rate + random.even(0.1, 1.5);
                }
            }};
}

}  // namespace bonkora::bench
