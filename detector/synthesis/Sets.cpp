#include "detector/synthesis/Sets.h"

#include <array>
#include <cmath>

#include "detector/synthesis/Throat.h"

namespace bonkora::detector::synthesis {

namespace {

// Voices swell within some hundredths of a second: a microphone that listens for knocks must not
// take them for one.
Contour swell(double rise, double hold, double duration) {
    return {{{0.0, 0.02}, {rise, 1.0}, {rise + hold, 0.8}, {duration, 0.0}}};
}

struct Yelp {
    double duration;
    double pitch;  // Hz at the beginning
    double leap;   // to the height of the cry, as a factor
    double end;    // likewise, at the end
    Vowel from;
    Vowel to;
    double throat;
};

double frequency(int semitonesFromA4) {
    return 440.0 * std::exp2(semitonesFromA4 / 12.0);
}

struct Chord {
    std::array<int, 4> voices;  // semitones from a', bass first
    double seconds;
};

// Three singers to a voice, none quite in tune and none quite at the same time.
void sing(Waveform& choir, const Chord& chord, double time, std::uint32_t seed) {
    for (std::size_t voice = 0; voice < chord.voices.size(); ++voice) {
        for (int singer = 0; singer < 3; ++singer) {
            const double pitch = frequency(chord.voices[voice]) * (1.0 + 0.004 * (singer - 1));
            const double duration = chord.seconds + 0.25;
            Utterance tone;
            tone.duration = duration;
            tone.pitch = {{{0.0, 0.985 * pitch}, {0.12, pitch}}};
            tone.loudness = swell(0.14, chord.seconds - 0.2, duration);
            tone.breath = {{{0.0, 0.12}}};
            tone.opening = {{{0.0, 0.1}, {0.3, 0.7}, {duration, 0.3}}};
            tone.from = oo;
            tone.to = ah;
            tone.throat = voice < 2 ? 0.95 : 1.12;
            tone.vibrato = 0.006;
            tone.seed =
                seed + static_cast<std::uint32_t>(3 * voice) + static_cast<std::uint32_t>(singer);
            mix(choir, speak(tone), time + 0.012 * singer, voice == 0 ? 1.2 : 0.8);
        }
    }
}

}  // namespace

std::vector<Waveform> pain() {
    const std::array<Yelp, 8> yelps{{
        {0.46, 230.0, 1.9, 0.75, ah, oo, 1.00},
        {0.36, 310.0, 1.6, 0.90, ah, ah, 1.10},
        {0.58, 190.0, 2.1, 0.70, ah, oh, 0.94},
        {0.42, 360.0, 1.5, 0.80, eh, ee, 1.16},
        {0.50, 260.0, 1.8, 0.65, oh, oo, 1.04},
        {0.32, 280.0, 1.7, 1.10, ah, eh, 1.08},
        {0.66, 170.0, 2.0, 0.60, ah, oo, 0.92},
        {0.40, 330.0, 1.8, 0.85, eh, ah, 1.14},
    }};
    std::vector<Waveform> sounds;
    std::uint32_t seed = 100;
    for (const Yelp& yelp : yelps) {
        const double d = yelp.duration;
        Utterance cry;
        cry.duration = d;
        cry.pitch = {{{0.0, yelp.pitch},
                      {0.18 * d, yelp.leap * yelp.pitch},
                      {0.45 * d, 0.9 * yelp.leap * yelp.pitch},
                      {d, yelp.end * yelp.pitch}}};
        cry.loudness = swell(0.05, 0.4 * d, d);
        cry.breath = {{{0.0, 0.25}, {0.08, 0.06}, {0.7 * d, 0.1}, {d, 0.5}}};
        cry.opening = {{{0.0, 0.0}, {0.4 * d, 0.1}, {0.8 * d, 1.0}}};
        cry.from = yelp.from;
        cry.to = yelp.to;
        cry.throat = yelp.throat;
        cry.roughness = 0.05;
        cry.seed = ++seed;
        sounds.push_back(speak(cry));
        finish(sounds.back(), 0.8);
    }
    return sounds;
}

std::vector<Waveform> sexy() {
    constexpr int steps = 8;
    std::vector<Waveform> sounds;
    for (int step = 0; step < steps; ++step) {
        const double keenness = static_cast<double>(step) / (steps - 1);
        const double d = 0.95 - 0.4 * keenness;
        const double pitch = 185.0 + 150.0 * keenness;
        Utterance voice;
        voice.duration = d;
        voice.pitch = {{{0.0, 0.9 * pitch},
                        {0.35 * d, (1.1 + 0.35 * keenness) * pitch},
                        {d, (0.8 + 0.1 * keenness) * pitch}}};
        voice.loudness = swell(0.10 - 0.04 * keenness, 0.4 * d, d);
        const double breath = 0.25 + 0.2 * keenness;
        voice.breath = {{{0.0, breath + 0.3}, {0.2 * d, breath}, {0.7 * d, breath}, {d, 0.9}}};
        voice.opening = {{{0.0, 0.0}, {0.35 * d, 0.25 + 0.75 * keenness}, {d, 0.3 * keenness}}};
        voice.from = step < 3 ? hum : oh;
        voice.to = step < 3 ? oo : ah;
        voice.throat = 1.12;
        voice.vibrato = 0.01;
        voice.roughness = 0.01;
        voice.seed = 200 + static_cast<std::uint32_t>(step);
        sounds.push_back(speak(voice));
        finish(sounds.back(), 0.35 + 0.45 * keenness);
    }
    return sounds;
}

std::vector<Waveform> halo() {
    // A chant in D, Dorian mode, in six lines: it climbs, hovers, and comes home.
    const std::array<std::array<Chord, 2>, 6> lines{{
        {{{{-31, -19, -12, -7}, 0.75}, {{-31, -19, -10, -4}, 0.95}}},
        {{{{-33, -21, -9, -5}, 0.75}, {{-26, -14, -10, -2}, 0.95}}},
        {{{{-24, -12, -8, -3}, 0.75}, {{-28, -16, -9, 0}, 0.95}}},
        {{{{-29, -17, -9, -2}, 0.75}, {{-31, -19, -10, -3}, 0.95}}},
        {{{{-26, -14, -10, -5}, 0.75}, {{-24, -12, -8, -5}, 0.95}}},
        {{{{-33, -21, -9, -5}, 0.75}, {{-31, -19, -12, -7}, 1.30}}},
    }};
    std::vector<Waveform> sounds;
    std::uint32_t seed = 300;
    for (const auto& line : lines) {
        Waveform choir;
        double time = 0.0;
        for (const Chord& chord : line) {
            sing(choir, chord, time, seed += 20);
            time += chord.seconds;
        }
        addRoom(choir, 0.9);
        finish(choir, 0.8);
        sounds.push_back(choir);
    }
    return sounds;
}

}  // namespace bonkora::detector::synthesis
