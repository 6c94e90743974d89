// Options: the detector's command line, read once at the start. Values; any thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "detector/sound/SoundChoice.h"
#include "platform/Result.h"

namespace bonkora::detector {

struct Options {
    enum class Task { listen, listSensors, showHelp, showVersion };

    // The limits of what is accepted; the panel's own lie well inside.
    static constexpr std::chrono::milliseconds longestCooldown = std::chrono::hours{1};
    static constexpr double highestMinAmplitude = 100.0;

    Task task = Task::listen;
    bool stdio = false;  // events as JSON, "quit" accepted on standard input
    std::chrono::milliseconds cooldown{750};
    double minAmplitude = 0.05;  // g, or fraction of full scale
    SoundSet soundSet = SoundSet::pain;
    std::string customFolder;  // of SoundSet::custom
    bool volumeScaling = false;
    bool fast = false;
    std::optional<std::string> sensor;  // "auto", "accelerometer", "microphone", "file:PATH"
    bool once = false;                  // end instead of waiting for a sensor
    bool asFastAsPossible = false;      // of a recording
    std::string sysfsRoot = "/sys";
    std::string deviceRoot = "/dev";
};

// `arguments` without the program's name. A refusal holds no text of the caller's own.
platform::Result<Options> parseOptions(const std::vector<std::string>& arguments);

// Whether `text` names a sensor: "auto", "accelerometer", "microphone" or "file:" and a path.
bool isSensorChoice(const std::string& text);

// What the detector says about itself. Nothing here may contain the letters that an application
// counts in plain lines (see docs/detector-protocol.md).
extern const std::string_view helpText;     // several lines, without the last line feed
extern const std::string_view versionText;  // one line, without line feed

}  // namespace bonkora::detector
