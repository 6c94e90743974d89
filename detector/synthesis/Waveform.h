// Waveform: one channel of sound, and what can be done with it. Values; any thread.
#pragma once

#include <string>
#include <vector>

namespace bonkora::detector::synthesis {

inline constexpr int sampleRate = 22050;  // samples a second; a voice needs no more

using Waveform = std::vector<double>;  // about -1 to 1

// A value that moves in straight lines from point to point in time.
struct Contour {
    struct Point {
        double time;  // s
        double value;
    };
    std::vector<Point> points;

    double at(double time) const;
};

// Adds `other` from `time` s on, making room for it.
void mix(Waveform& sound, const Waveform& other, double time, double gain);

// A large stone room.
void addRoom(Waveform& sound, double seconds);

// Brings the loudest sample to `peak` and takes the edge off the very end.
void finish(Waveform& sound, double peak);

// 16-bit WAV. False when the file cannot be written.
bool writeWav(const std::string& path, const Waveform& sound);

}  // namespace bonkora::detector::synthesis
