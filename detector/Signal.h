// What a sensor tells: the words that sensing, detection and sound share. Values; any thread.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bonkora::detector {

// One reading. An accelerometer's three axes in g, gravity included; a microphone's pressure as a
// fraction of full scale in the first place, the others 0.
using Frame = std::array<float, 3>;

// What a loudspeaker was given since it was last asked.
struct Played {
    double rate = 0.0;           // samples a second; 0: it was given nothing yet
    std::uint64_t end = 0;       // samples since the beginning
    std::vector<float> samples;  // the last of them, one channel; all between were silent
};

enum class SensorKind { accelerometer, microphone };

constexpr std::string_view nameOf(SensorKind kind) {
    return kind == SensorKind::accelerometer ? "accelerometer" : "microphone";
}

}  // namespace bonkora::detector
