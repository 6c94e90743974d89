#include "detector/program/SensorSource.h"

#include <utility>

#include "detector/sensing/Microphone.h"
#include "detector/sensing/Recording.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

OpenedSensor openRecording(const std::string& path, bool asFastAsPossible) {
    auto read = readRecording(path);
    if (!read) {
        return platform::Failed{"recording " + path + ": " + read.error()};
    }
    constexpr std::uint64_t stepsAtOnce = 20;
    auto ticker =
        asFastAsPossible ? Ticker::always(stepsAtOnce) : Ticker::every(RecordingSensor::step);
    if (!ticker) {
        return platform::Failed{"the system has no timer to give"};
    }
    return std::make_unique<RecordingSensor>(*std::move(read), path, std::move(ticker));
}

std::string assess(double rate, bool inLid) {
    auto text = platform::fixedDecimal(rate, 0) + " readings a second";
    if (rate < lowestRate) {
        text += "; not taken: too few to feel a knock";
    } else if (rate < lowestAutoRate) {
        text += "; taken only if asked for: with fewer than " +
                platform::fixedDecimal(lowestAutoRate, 0) + " it misses knocks";
    }
    if (inLid) {
        text += "; in the lid, taken after the others";
    }
    return text;
}

}  // namespace

std::vector<OpenedAccelerometer> openAccelerometers(const SystemRoots& roots) {
    std::vector<OpenedAccelerometer> opened;
    for (auto& files : findAccelerometers(roots)) {
        auto sensor = openAccelerometer(files, roots);
        opened.push_back({std::move(files), std::move(sensor)});
    }
    return opened;
}

OpenedSensor chooseAccelerometer(
    const SensorChoice& choice,
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the chosen sensor is moved out of it
    std::vector<OpenedAccelerometer> opened) {
    std::string reason{whyNoAccelerometer};
    for (auto& [files, sensor] : opened) {
        if (!choice.device.empty() && choice.device != files.name && choice.device != files.id) {
            continue;
        }
        if (!sensor) {
            reason = sensor.error();
            continue;
        }
        const double rate = (*sensor)->description().rate;
        if (rate >= (choice.sensor == "auto" ? lowestAutoRate : lowestRate)) {
            return std::move(sensor);
        }
        reason =
            files.name + " gives only " + platform::fixedDecimal(rate, 0) + " readings a second";
    }
    return platform::Failed{reason};
}

OpenedSensor openSensor(const SensorChoice& choice,
                        std::vector<OpenedAccelerometer> accelerometers) {
    if (choice.sensor.starts_with("file:")) {
        return openRecording(choice.sensor.substr(5), choice.asFastAsPossible);
    }
    std::string lookedFor = "looked for ";
    if (choice.sensor != "microphone") {
        if (accelerometers.empty()) {
            accelerometers = openAccelerometers(choice.roots);
        }
        auto opened = chooseAccelerometer(choice, std::move(accelerometers));
        if (opened) {
            return opened;
        }
        lookedFor += "an accelerometer (" + opened.error() + ")";
    }
    if (choice.sensor == "auto") {
        lookedFor += " and ";
    }
    if (choice.sensor != "accelerometer") {
        auto opened = openMicrophone(choice.device);
        if (opened) {
            return opened;
        }
        lookedFor += "a microphone (" + opened.error() + ")";
    }
    return platform::Failed{lookedFor};
}

std::vector<std::string> listSensors(const SystemRoots& roots) {
    std::vector<std::string> lines;
    for (const auto& [files, sensor] : openAccelerometers(roots)) {
        const auto state = sensor ? assess((*sensor)->description().rate, files.inLid)
                                  : "not taken: " + sensor.error();
        lines.push_back("accelerometer\t" + files.id + "\t" + files.name + "\t" + state);
    }
    for (const auto& name : findMicrophones()) {
        lines.push_back("microphone\t" + name);
    }
    return lines;
}

}  // namespace bonkora::detector
