#include "bridge/DetectorSettings.h"

#include "platform/Text.h"

namespace bonkora {

std::vector<std::string> detectorArguments(const DetectorSettings& settings) {
    std::vector<std::string> arguments{"--stdio", "--cooldown",
                                       platform::decimal(settings.cooldownMs), "--min-amplitude",
                                       platform::fixedDecimal(settings.minAmplitude, 3)};
    switch (settings.mode) {
        case Mode::pain:
            break;  // what the detector does unasked
        case Mode::sexy:
            arguments.emplace_back("--sexy");
            break;
        case Mode::halo:
            arguments.emplace_back("--halo");
            break;
        case Mode::custom:
            if (!settings.customSoundPath.empty()) {
                arguments.emplace_back("--custom");
                arguments.push_back(settings.customSoundPath);
            }
            break;
    }
    if (settings.volumeScaling) {
        arguments.emplace_back("--volume-scaling");
    }
    if (settings.fastMode) {
        arguments.emplace_back("--fast");
    }
    return arguments;
}

}  // namespace bonkora
