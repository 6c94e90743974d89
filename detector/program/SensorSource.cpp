#include "detector/program/SensorSource.h"

#include <utility>

#include "detector/sensing/Microphone.h"
#include "detector/sensing/Recording.h"
#include "detector/sensing/RecordingSensor.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

using Opened = std::variant<std::unique_ptr<Sensor>, std::string>;

Opened openRecording(const std::string& path, bool asFastAsPossible) {
    auto read = readRecording(path);
    if (const auto* const error = std::get_if<RecordingError>(&read)) {
        return "recording " + path + ": " + error->reason;
    }
    constexpr std::uint64_t stepsAtOnce = 20;
    auto ticker =
        asFastAsPossible ? Ticker::always(stepsAtOnce) : Ticker::every(RecordingSensor::step);
    if (!ticker) {
        return "the system has no timer to give";
    }
    return std::make_unique<RecordingSensor>(std::get<Recording>(std::move(read)), path,
                                             std::move(ticker));
}

Opened openAuto(const SensorChoice& choice) {
    auto accelerometer = openAnyAccelerometer(choice);
    if (accelerometer.index() == 0) {
        return accelerometer;
    }
    auto microphone = openMicrophone(choice.device);
    if (microphone.index() == 0) {
        return microphone;
    }
    return "looked for an accelerometer (" + std::get<std::string>(accelerometer) +
           ") and a microphone (" + std::get<std::string>(microphone) + ")";
}

}  // namespace

Opened openAnyAccelerometer(const SensorChoice& choice) {
    std::string reason = "none is there";
    for (const auto& files : findAccelerometers(choice.roots)) {
        if (!choice.device.empty() && choice.device != files.name && choice.device != files.id) {
            continue;
        }
        auto opened = openAccelerometer(files, choice.roots);
        if (auto* const why = std::get_if<std::string>(&opened)) {
            reason = *why;
            continue;
        }
        const double rate = std::get<0>(opened)->description().rate;
        if (choice.sensor == "auto" && rate < lowestAutoRate) {
            reason = files.name + " gives only " + platform::fixedDecimal(rate, 0) +
                     " readings a second";
            continue;
        }
        return opened;
    }
    return reason;
}

Opened openSensor(const SensorChoice& choice) {
    if (choice.sensor.starts_with("file:")) {
        return openRecording(choice.sensor.substr(5), choice.asFastAsPossible);
    }
    if (choice.sensor == "auto") {
        return openAuto(choice);
    }
    const bool wantsMicrophone = choice.sensor == "microphone";
    auto opened = wantsMicrophone ? openMicrophone(choice.device) : openAnyAccelerometer(choice);
    if (auto* const reason = std::get_if<std::string>(&opened)) {
        return "looked for " + std::string{wantsMicrophone ? "a microphone" : "an accelerometer"} +
               " (" + *reason + ")";
    }
    return opened;
}

std::vector<std::string> listSensors(const SystemRoots& roots) {
    std::vector<std::string> lines;
    for (const auto& files : findAccelerometers(roots)) {
        const auto opened = openAccelerometer(files, roots);
        const auto* const sensor = std::get_if<0>(&opened);
        lines.push_back(
            "accelerometer\t" + files.id + "\t" + files.name + "\t" +
            (sensor != nullptr
                 ? platform::fixedDecimal((*sensor)->description().rate, 0) + " readings a second"
                 : std::get<1>(opened)));
    }
    for (const auto& name : findMicrophones()) {
        lines.push_back("microphone\t" + name);
    }
    return lines;
}

}  // namespace bonkora::detector
