#include "detector/program/Configuration.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "detector/program/Options.h"
#include "detector/sensing/SystemFiles.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

constexpr std::size_t largestFile = std::size_t{64} * 1024;  // bytes

// Why the setting is refused, or nothing.
std::optional<std::string> apply(Configuration& configuration, std::string_view key,
                                 const std::string& value) {
    if (key == "sensor") {
        if (!isSensorChoice(value)) {
            return "sensor is auto, accelerometer, microphone or file:PATH";
        }
        configuration.sensor = value;
    } else if (key == "device") {
        configuration.device = value;
    } else if (key == "sounds") {
        configuration.soundsFolder = value;
    } else if (key == "mute") {
        if (value != "yes" && value != "no") {
            return "mute is yes or no";
        }
        configuration.mute = value == "yes";
    } else {
        return "unknown key; known are sensor, device, sounds and mute";
    }
    return std::nullopt;
}

std::optional<std::string> applyLine(Configuration& configuration, std::string_view line) {
    line = platform::trimmed(line);
    if (line.empty() || line.front() == '#') {
        return std::nullopt;
    }
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) {
        return "no \"=\" after the key";
    }
    const auto key = platform::trimmed(line.substr(0, equals));
    return apply(configuration, key, std::string{platform::trimmed(line.substr(equals + 1))});
}

}  // namespace

Configuration parseConfiguration(std::string_view text) {
    Configuration configuration;
    if (!platform::isValidUtf8(text) || text.find('\0') != std::string_view::npos) {
        configuration.complaints.emplace_back("it is not a text file");
        return configuration;
    }
    for (int number = 1; !text.empty(); ++number) {
        const auto line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (const auto complaint = applyLine(configuration, line)) {
            configuration.complaints.push_back("line " + platform::decimal(number) + ": " +
                                               *complaint);
        }
    }
    return configuration;
}

Configuration readConfiguration() {
    const char* const folder = std::getenv("XDG_CONFIG_HOME");
    const char* const home = std::getenv("HOME");
    std::string path;
    if (folder != nullptr && folder[0] == '/') {
        path = folder;
    } else if (home != nullptr) {
        path = std::string{home} + "/.config";
    } else {
        return {};
    }
    const auto text = readSmallFile(path + "/Bonkora/spank.conf", largestFile);
    return text ? parseConfiguration(*text) : Configuration{};
}

}  // namespace bonkora::detector
