// What a sensor tells: the words that sensing, detection and sound share. Values; any thread.
#pragma once

#include <array>
#include <string_view>

namespace bonkora::detector {

// One reading. An accelerometer's three axes in g, gravity included; a microphone's pressure as a
// fraction of full scale in the first place, the others 0.
using Frame = std::array<float, 3>;

enum class SensorKind { accelerometer, microphone };

constexpr std::string_view nameOf(SensorKind kind) {
    return kind == SensorKind::accelerometer ? "accelerometer" : "microphone";
}

}  // namespace bonkora::detector
