#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "detector/Number.h"
#include "detector/sensing/Accelerometers.h"
#include "detector/sensing/SystemFiles.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

namespace fs = std::filesystem;

// Faster readings than this tell no more about a knock on a case.
constexpr double highestUsefulRate = 1600.0;

std::optional<int> deviceNumber(const std::string& id) {
    constexpr std::string_view prefix = "iio:device";
    return id.starts_with(prefix) ? parseNumber<int>(std::string_view{id}.substr(prefix.size()))
                                  : std::nullopt;
}

// Newer kernels label the channel's device, older ones (cros_ec) tell its location.
bool isInLid(const std::string& folder) {
    return readAttribute(folder + "/label") == "accel-display" ||
           readAttribute(folder + "/location") == "lid";
}

void addIndustrialIo(const SystemRoots& roots, std::vector<AccelerometerFiles>& found) {
    std::error_code error;
    for (fs::directory_iterator entry{roots.sysfs + "/bus/iio/devices", error}, end;
         !error && entry != end; entry.increment(error)) {
        const std::string folder = entry->path();
        const std::string id = entry->path().filename();
        if (deviceNumber(id) && readAttribute(folder + "/in_accel_x_raw")) {
            found.push_back({AccelerometerFiles::Family::industrialIo, id,
                             readAttribute(folder + "/name").value_or(id), folder,
                             isInLid(folder)});
        }
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
        return a.inLid != b.inLid ? b.inLid : deviceNumber(a.id) < deviceNumber(b.id);
    });
}

// "25 50 100" and "[25 1 400]" (lowest, step, highest) are both in use.
std::vector<double> offeredRates(const std::string& folder, const std::string& prefix) {
    auto text = readAttribute(folder + "/" + prefix + "sampling_frequency_available");
    std::vector<double> rates;
    if (!text) {
        return rates;
    }
    std::replace_if(
        text->begin(), text->end(), [](char c) { return c == '[' || c == ']'; }, ' ');
    std::string_view rest = *text;
    while (!(rest = platform::trimmed(rest)).empty()) {
        const auto word = rest.substr(0, rest.find(' '));
        if (const auto rate = parseNumber<double>(word); rate && *rate > 0.0) {
            rates.push_back(*rate);
        }
        rest.remove_prefix(word.size());
    }
    return rates;
}

// As the text to write; the kernel reads plain decimals.
std::optional<std::string> fastestOffered(const std::string& folder, const std::string& prefix) {
    double fastest = 0.0;
    for (const double rate : offeredRates(folder, prefix)) {
        fastest = rate <= highestUsefulRate ? std::max(fastest, rate) : fastest;
    }
    if (fastest == 0.0) {
        return std::nullopt;
    }
    return fastest == std::floor(fastest) ? platform::fixedDecimal(fastest, 0)
                                          : platform::fixedDecimal(fastest, 6);
}

// Sensor hubs offer no list. They take what they can, or refuse it.
void tryRates(const std::string& path, HeldSettings& settings) {
    for (const char* const rate : {"800", "400", "200", "100"}) {
        if (const auto now = readNumber(path);
            !now || *now >= *parseNumber<double>(rate) || settings.hold(path, rate)) {
            return;
        }
    }
}

}  // namespace

const std::string_view whyNoAccelerometer = "none is there";

std::vector<AccelerometerFiles> findAccelerometers(const SystemRoots& roots) {
    std::vector<AccelerometerFiles> found;
    addIndustrialIo(roots, found);
    for (const char* const id : {"lis3lv02d", "applesmc.768", "hdaps"}) {
        const std::string folder = roots.sysfs + "/devices/platform/" + id;
        if (readAttribute(folder + "/position")) {
            found.push_back({AccelerometerFiles::Family::position, id, id, folder});
        }
    }
    return found;
}

std::optional<double> chooseRate(const std::string& folder, HeldSettings& settings) {
    // With a hysteresis a hub tells only changes that are larger, as for turning the screen.
    for (const char* const axis : {"", "_x", "_y", "_z"}) {
        const std::string path = folder + "/in_accel" + axis + "_hysteresis";
        if (readNumber(path).value_or(0.0) != 0.0) {
            static_cast<void>(settings.hold(path, "0"));
        }
    }
    for (const std::string prefix : {"", "in_accel_"}) {
        const std::string path = folder + "/" + prefix + "sampling_frequency";
        // Without the right to change it, the rate stays as it is.
        if (const auto fastest = fastestOffered(folder, prefix)) {
            static_cast<void>(settings.hold(path, *fastest));
        } else {
            tryRates(path, settings);
        }
        if (const auto rate = readNumber(path); rate && *rate > 0.0) {
            return std::min(*rate, 100000.0);
        }
    }
    return std::nullopt;
}

std::optional<double> readAxisNumber(const std::string& folder, char axis,
                                     const std::string& attribute) {
    const auto own = readNumber(folder + "/in_accel_" + axis + "_" + attribute);
    return own ? own : readNumber(folder + "/in_accel_" + attribute);
}

OpenedSensor openAccelerometer(const AccelerometerFiles& files, const SystemRoots& roots) {
    if (files.family == AccelerometerFiles::Family::industrialIo) {
        if (auto sensor = openBuffered(files, roots)) {
            return sensor;
        }
    }
    return openPolled(files);
}

}  // namespace bonkora::detector
