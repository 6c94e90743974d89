#include "detector/synthesis/Waveform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>

namespace bonkora::detector::synthesis {

namespace {

void append(std::string& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xffU);
    }
}

}  // namespace

double Contour::at(double time) const {
    if (time <= points.front().time) {
        return points.front().value;
    }
    for (std::size_t i = 1; i < points.size(); ++i) {
        const Point& before = points[i - 1];
        const Point& after = points[i];
        if (time < after.time) {
            const double part = (time - before.time) / (after.time - before.time);
            return before.value + part * (after.value - before.value);
        }
    }
    return points.back().value;
}

void mix(Waveform& sound, const Waveform& other, double time, double gain) {
    const auto begin = static_cast<std::size_t>(time * sampleRate);
    sound.resize(std::max(sound.size(), begin + other.size()));
    for (std::size_t i = 0; i < other.size(); ++i) {
        sound[begin + i] += gain * other[i];
    }
}

void addRoom(Waveform& sound, double seconds) {
    const Waveform dry = sound;
    sound.resize(sound.size() + static_cast<std::size_t>(seconds * sampleRate));
    // Echoes whose times have no common divisor, each fading to a thousandth within `seconds`.
    constexpr std::array<double, 5> echoTimes{0.0437, 0.0531, 0.0613, 0.0719, 0.0831};
    for (const double echoTime : echoTimes) {
        const auto delay = static_cast<std::size_t>(echoTime * sampleRate);
        const double fade = std::pow(0.001, echoTime / seconds);
        Waveform ring(sound.size());
        double dulled = 0.0;
        for (std::size_t i = delay; i < ring.size(); ++i) {
            const double heard = (i - delay < dry.size() ? dry[i - delay] : 0.0);
            dulled += 0.5 * (ring[i - delay] - dulled);
            ring[i] = heard + fade * dulled;
            sound[i] += 0.12 * ring[i];
        }
    }
}

void finish(Waveform& sound, double peak) {
    double loudest = 1e-9;
    for (const double sample : sound) {
        loudest = std::max(loudest, std::abs(sample));
    }
    const auto edge = std::min<std::size_t>(sound.size(), sampleRate / 50);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const auto left = sound.size() - i;
        const double fade = left < edge ? static_cast<double>(left) / static_cast<double>(edge) : 1;
        sound[i] *= peak / loudest * fade;
    }
}

bool writeWav(const std::string& path, const Waveform& sound) {
    const auto size = static_cast<std::uint32_t>(2 * sound.size());
    std::string bytes = "RIFF";
    append(bytes, 36 + size, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);
    append(bytes, 1, 2);  // plain samples
    append(bytes, 1, 2);  // one channel
    append(bytes, sampleRate, 4);
    append(bytes, 2 * sampleRate, 4);  // bytes a second
    append(bytes, 2, 2);               // bytes a frame
    append(bytes, 16, 2);              // bits a sample
    bytes += "data";
    append(bytes, size, 4);
    for (const double sample : sound) {
        const auto value = std::lround(std::clamp(sample, -1.0, 1.0) * 32767.0);
        append(bytes, static_cast<std::uint32_t>(value), 2);
    }
    std::ofstream file{path, std::ios::binary};
    file << bytes;
    file.close();
    return !file.fail();
}

}  // namespace bonkora::detector::synthesis
