// Accelerometers whose files are read again and again.
#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "detector/Number.h"
#include "detector/sensing/Accelerometers.h"
#include "detector/sensing/SystemFiles.h"
#include "detector/sensing/Ticker.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

constexpr double highestRate = 400.0;  // enough for a knock, and little work
constexpr double unknownRate = std::numeric_limits<double>::infinity();

// Readings in g, one at each call; nothing when the device has gone.
using Read = std::function<std::optional<Frame>()>;

struct Source {
    Read read;
    double rate = unknownRate;  // at which the device itself takes readings
};

// "(12,-34,1020)", in `unitsInG` to the g; two axes are enough, the third is then 0.
std::optional<Frame> parsePosition(std::string_view text, double unitsInG, std::size_t axes) {
    if (!text.starts_with('(') || !text.ends_with(')')) {
        return std::nullopt;
    }
    text = text.substr(1, text.size() - 2);
    Frame frame{};
    for (std::size_t axis = 0; axis < axes; ++axis) {
        const auto end = axis + 1 < axes ? text.find(',') : text.size();
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const auto value = parseNumber<double>(platform::trimmed(text.substr(0, end)));
        if (!value) {
            return std::nullopt;
        }
        frame.at(axis) = static_cast<float>(*value / unitsInG);
        text.remove_prefix(std::min(text.size(), end + 1));
    }
    return frame;
}

// Each chip of the family takes only its own rates.
void raiseRate(const std::string& path, HeldSettings& settings) {
    for (const char* const rate : {"400", "640", "200", "160", "100"}) {
        if (const auto now = readNumber(path);
            !now || *now >= *parseNumber<double>(rate) || settings.hold(path, rate)) {
            return;
        }
    }
}

Source positionSource(const AccelerometerFiles& files, HeldSettings& settings) {
    const bool inMilliG = files.id == "lis3lv02d";
    const double unitsInG = inMilliG ? 1000.0 : 256.0;
    const std::size_t axes = files.id == "hdaps" ? 2 : 3;
    Source source;
    source.read = [path = files.folder + "/position", unitsInG, axes]() -> std::optional<Frame> {
        const auto text = readAttribute(path);
        return text ? parsePosition(*text, unitsInG, axes) : std::nullopt;
    };
    if (files.id == "hdaps") {
        source.rate = 50.0;  // its controller samples no faster
    } else {
        raiseRate(files.folder + "/rate", settings);
        const auto rate = readNumber(files.folder + "/rate");
        source.rate = rate && *rate > 0.0 ? *rate : unknownRate;
    }
    return source;
}

std::optional<Source> industrialIoSource(const AccelerometerFiles& files, HeldSettings& settings) {
    struct PolledAxis {
        std::string path;
        double scale = 0.0;
        double offset = 0.0;
    };
    std::array<PolledAxis, 3> axes;
    for (std::size_t i = 0; i < axes.size(); ++i) {
        const char letter = "xyz"[i];
        const auto scale = readAxisNumber(files.folder, letter, "scale");
        if (!scale) {
            return std::nullopt;
        }
        axes.at(i) = {files.folder + "/in_accel_" + letter + "_raw", *scale / standardGravity,
                      readAxisNumber(files.folder, letter, "offset").value_or(0.0)};
    }
    Source source;
    source.rate = chooseRate(files.folder, settings).value_or(unknownRate);
    source.read = [axes]() -> std::optional<Frame> {
        Frame frame{};
        for (std::size_t i = 0; i < axes.size(); ++i) {
            const auto raw = readNumber(axes.at(i).path);
            if (!raw) {
                return std::nullopt;
            }
            frame.at(i) = static_cast<float>((*raw + axes.at(i).offset) * axes.at(i).scale);
        }
        return frame;
    };
    return source;
}

class PolledAccelerometer final : public Sensor {
  public:
    PolledAccelerometer(SensorDescription description, Read theRead,
                        std::unique_ptr<HeldSettings> theSettings,
                        std::unique_ptr<Ticker> theTicker)
        : about(std::move(description)),
          readOnce(std::move(theRead)),
          settings(std::move(theSettings)),
          ticker(std::move(theTicker)) {}

    const SensorDescription& description() const override { return about; }
    int descriptor() const override { return ticker->descriptor(); }

    SensorState read(std::vector<Frame>& frames) override {
        // The present reading also stands for moments that were missed, so that the signal's time
        // stays true. After a second or more the computer has slept: nothing was missed.
        const auto second = static_cast<std::uint64_t>(about.rate);
        const auto missed = std::min(ticker->take(), std::max<std::uint64_t>(second, 1));
        if (missed == 0) {
            return {};
        }
        const auto frame = readOnce();
        if (!frame) {
            return {SensorState::Kind::lost, "the accelerometer has gone"};
        }
        frames.insert(frames.end(), missed, *frame);
        return {};
    }

  private:
    const SensorDescription about;
    const Read readOnce;
    const std::unique_ptr<HeldSettings> settings;
    const std::unique_ptr<Ticker> ticker;
};

}  // namespace

double measuredRate(const std::function<bool()>& read,
                    const std::function<std::chrono::duration<double>()>& now) {
    constexpr int most = 20;
    constexpr std::chrono::duration<double> longest{0.1};
    const auto begin = now();
    std::chrono::duration<double> passed{};
    int count = 0;
    for (; count < most && passed < longest; ++count) {
        if (!read()) {
            return 0.0;
        }
        passed = now() - begin;
    }
    return count / std::max(passed.count(), 1e-6);
}

OpenedSensor openPolled(const AccelerometerFiles& files) {
    auto settings = std::make_unique<HeldSettings>();
    auto source = files.family == AccelerometerFiles::Family::position
                      ? positionSource(files, *settings)
                      : industrialIoSource(files, *settings);
    if (!source) {
        return platform::Failed{"the accelerometer's files lack its scale"};
    }
    // Half of what is possible leaves the device's bus to others as well.
    const double possible =
        measuredRate([&] { return source->read().has_value(); },
                     [] { return std::chrono::steady_clock::now().time_since_epoch(); });
    const double rate = std::min({source->rate, possible / 2.0, highestRate});
    if (!(rate > 0.0)) {
        return platform::Failed{"the accelerometer's files cannot be read"};
    }
    if (rate < 1.0) {
        return platform::Failed{"the accelerometer takes longer than a second for a reading"};
    }
    auto ticker = Ticker::every(std::chrono::nanoseconds{static_cast<std::int64_t>(1e9 / rate)});
    if (!ticker) {
        return platform::Failed{"the system has no timer to give"};
    }
    return std::make_unique<PolledAccelerometer>(
        SensorDescription{SensorKind::accelerometer, files.name, rate}, std::move(source->read),
        std::move(settings), std::move(ticker));
}

}  // namespace bonkora::detector
