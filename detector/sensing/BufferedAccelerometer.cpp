// Industrial I/O accelerometers that fill a buffer by themselves.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <utility>

#include "detector/sensing/Accelerometers.h"
#include "detector/sensing/ScanLayout.h"
#include "detector/sensing/SystemFiles.h"
#include "platform/Descriptor.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

namespace fs = std::filesystem;

struct Axis {
    ScanElement element;
    double scale = 0.0;  // g
    double offset = 0.0;
};

struct Scan {
    std::array<Axis, 3> axes;
    std::optional<ScanElement> timestamp;  // ns
    std::size_t size = 0;                  // bytes
};

std::optional<ScanElement> readElement(const std::string& folder, const std::string& channel) {
    const auto type = readAttribute(folder + "/scan_elements/" + channel + "_type");
    const auto index = readNumber(folder + "/scan_elements/" + channel + "_index");
    if (!type || !index || std::abs(*index) > 10000.0) {
        return std::nullopt;
    }
    return parseScanElement(*type, static_cast<int>(*index));
}

// Switches the three axes on, the time with them where there is one, and all else off.
bool chooseChannels(const std::string& folder, bool withTime, HeldSettings& settings) {
    std::error_code error;
    for (fs::directory_iterator entry{folder + "/scan_elements", error}, end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (!name.ends_with("_en")) {
            continue;
        }
        const bool wanted = name == "in_accel_x_en" || name == "in_accel_y_en" ||
                            name == "in_accel_z_en" || (withTime && name == "in_timestamp_en");
        if (!settings.hold(entry->path(), wanted ? "1" : "0")) {
            return false;
        }
    }
    return !error;
}

std::optional<Scan> readScan(const std::string& folder) {
    Scan scan;
    std::vector<ScanElement*> elements;
    for (std::size_t i = 0; i < scan.axes.size(); ++i) {
        const char letter = "xyz"[i];
        const auto element = readElement(folder, std::string{"in_accel_"} + letter);
        const auto scale = readAxisNumber(folder, letter, "scale");
        if (!element || !scale) {
            return std::nullopt;
        }
        scan.axes.at(i) = {*element, *scale / standardGravity,
                           readAxisNumber(folder, letter, "offset").value_or(0.0)};
        elements.push_back(&scan.axes.at(i).element);
    }
    scan.timestamp = readElement(folder, "in_timestamp");
    if (scan.timestamp) {
        elements.push_back(&*scan.timestamp);
    }
    scan.size = layOut(elements);
    return scan;
}

// Many devices need a trigger, usually one of their own that carries their name.
void chooseTrigger(const AccelerometerFiles& files, const SystemRoots& roots,
                   HeldSettings& settings) {
    const std::string path = files.folder + "/trigger/current_trigger";
    if (!readAttribute(path).value_or("none").empty()) {
        return;  // it has a trigger, or uses none
    }
    std::error_code error;
    for (fs::directory_iterator entry{roots.sysfs + "/bus/iio/devices", error}, end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = readAttribute(std::string{entry->path()} + "/name").value_or("");
        const std::string id = entry->path().filename();
        if (id.starts_with("trigger") && name.starts_with(files.name) &&
            settings.hold(path, name)) {
            return;
        }
    }
}

class BufferedAccelerometer final : public Sensor {
  public:
    BufferedAccelerometer(SensorDescription description, const Scan& theScan,
                          std::unique_ptr<HeldSettings> theSettings,
                          platform::UniqueDescriptor theDevice)
        : about(std::move(description)),
          scan(theScan),
          settings(std::move(theSettings)),
          device(std::move(theDevice)) {}

    const SensorDescription& description() const override { return about; }
    int descriptor() const override { return device.get(); }

    SensorState read(std::vector<Frame>& frames) override {
        std::array<char, 16384> chunk{};
        for (;;) {
            const auto count = ::read(device.get(), chunk.data(), chunk.size());
            if (count > 0) {
                bytes.append(chunk.data(), static_cast<std::size_t>(count));
                decode(frames);
            } else if (count < 0 && errno == EINTR) {
                continue;
            } else if (count < 0 && errno == EAGAIN) {
                return {};
            } else {
                return {SensorState::Kind::lost, "the accelerometer has gone"};
            }
            if (static_cast<std::size_t>(count) < chunk.size()) {
                return {};
            }
        }
    }

  private:
    // A scan may arrive in pieces; the unfinished part stays in `bytes`.
    void decode(std::vector<Frame>& frames) {
        std::size_t begin = 0;
        for (; begin + scan.size <= bytes.size(); begin += scan.size) {
            const char* const data = bytes.data() + begin;
            Frame frame{};
            for (std::size_t i = 0; i < frame.size(); ++i) {
                const Axis& axis = scan.axes.at(i);
                const auto raw = static_cast<double>(axis.element.valueIn(data));
                frame.at(i) = static_cast<float>((raw + axis.offset) * axis.scale);
            }
            frames.insert(frames.end(), lostBefore(data), frame);
            frames.push_back(frame);
        }
        bytes.erase(0, begin);
    }

    // The readings that are missing before this one because the buffer ran over. The next one is
    // used in their place, so that the signal's time stays true. A gap of more than a second is a
    // pause of the computer, not a loss.
    std::size_t lostBefore(const char* data) {
        if (!scan.timestamp) {
            return 0;
        }
        const auto now = scan.timestamp->valueIn(data);
        const auto before = std::exchange(lastTime, now);
        const double steps =
            (static_cast<double>(now) - static_cast<double>(before)) * 1e-9 * about.rate;
        const bool isLoss = before != 0 && steps > 2.5 && steps < about.rate;
        return isLoss ? static_cast<std::size_t>(std::lround(steps)) - 1 : 0;
    }

    const SensorDescription about;
    const Scan scan;
    // The device is closed before its settings go back.
    const std::unique_ptr<HeldSettings> settings;
    const platform::UniqueDescriptor device;
    std::string bytes;
    std::int64_t lastTime = 0;  // ns; 0 before the first scan
};

// A program that was killed leaves its buffer switched on, and nobody reads it. The kernel lets
// only one program open the device: where that works, the buffer is nobody's, and is switched off.
bool switchOffIfForgotten(const std::string& folder, const std::string& node) {
    const std::string path = folder + "/buffer/enable";
    if (readAttribute(path).value_or("0") == "0") {
        return true;
    }
    const platform::UniqueDescriptor reading{
        ::open(node.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    return reading && writeAttribute(path, "0") && readAttribute(path) == "0";
}

}  // namespace

OpenedSensor openBuffered(const AccelerometerFiles& files, const SystemRoots& roots) {
    const auto scan = readScan(files.folder);
    const std::string node = roots.devices + "/" + files.id;
    if (!scan || !readAttribute(files.folder + "/buffer/enable")) {
        return platform::Failed{"the accelerometer has no buffer"};
    }
    if (!switchOffIfForgotten(files.folder, node)) {
        return platform::Failed{"another program uses the accelerometer's buffer"};
    }
    auto settings = std::make_unique<HeldSettings>();
    const auto rate = chooseRate(files.folder, *settings);
    if (!rate || !chooseChannels(files.folder, scan->timestamp.has_value(), *settings)) {
        return platform::Failed{"the accelerometer may not be set up"};
    }
    chooseTrigger(files, roots, *settings);
    // Room for a quarter of a second; readable after 5 ms, or at each reading if that is longer.
    const auto watermark = std::max<std::int64_t>(1, std::llround(*rate * 0.005));
    const auto length = std::max<std::int64_t>(2 * watermark, std::llround(*rate * 0.25));
    static_cast<void>(settings->hold(files.folder + "/buffer/length", platform::decimal(length)));
    static_cast<void>(
        settings->hold(files.folder + "/buffer/watermark", platform::decimal(watermark)));
    if (!settings->hold(files.folder + "/buffer/enable", "1")) {
        return platform::Failed{"the accelerometer's buffer cannot be switched on"};
    }
    platform::UniqueDescriptor device{::open(node.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (!device) {
        return platform::Failed{"the accelerometer's device may not be opened"};
    }
    return std::make_unique<BufferedAccelerometer>(
        SensorDescription{SensorKind::accelerometer, files.name, *rate}, *scan, std::move(settings),
        std::move(device));
}

}  // namespace bonkora::detector
