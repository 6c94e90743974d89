#include "detector/program/Options.h"

#include <cstddef>

#include "detector/Number.h"

namespace bonkora::detector {

namespace {

class Parser {
  public:
    explicit Parser(const std::vector<std::string>& theArguments) : arguments(theArguments) {}

    std::variant<Options, UsageError> parse() {
        while (next < arguments.size() && !error) {
            parseOption(arguments[next++]);
        }
        if (error) {
            return *error;
        }
        return options;
    }

  private:
    void parseOption(const std::string& name) {
        if (name == "--stdio") {
            options.stdio = true;
        } else if (name == "--cooldown") {
            parseCooldown();
        } else if (name == "--min-amplitude") {
            parseMinAmplitude();
        } else if (name == "--sexy") {
            chooseSounds(SoundSet::sexy);
        } else if (name == "--halo") {
            chooseSounds(SoundSet::halo);
        } else if (name == "--custom") {
            chooseSounds(SoundSet::custom);
            options.customFolder = value("--custom needs a folder");
        } else if (name == "--volume-scaling") {
            options.volumeScaling = true;
        } else if (name == "--fast") {
            options.fast = true;
        } else if (name == "--sensor") {
            parseSensor();
        } else if (name == "--once") {
            options.once = true;
        } else if (name == "--as-fast-as-possible") {
            options.asFastAsPossible = true;
        } else if (name == "--list-sensors") {
            options.task = Options::Task::listSensors;
        } else if (name == "--help") {
            options.task = Options::Task::showHelp;
        } else if (name == "--version") {
            options.task = Options::Task::showVersion;
        } else if (name == "--sysfs") {
            options.sysfsRoot = value("--sysfs needs a folder");
        } else if (name == "--dev") {
            options.deviceRoot = value("--dev needs a folder");
        } else {
            refuse("there is an unknown option");
        }
    }

    std::string value(const char* whatIsMissing) {
        if (next == arguments.size()) {
            refuse(whatIsMissing);
            return {};
        }
        return arguments[next++];
    }

    void parseCooldown() {
        const auto number = parseNumber<long long>(value("--cooldown needs a number"));
        if (!number || *number < 0 || *number > Options::longestCooldown.count()) {
            refuse("--cooldown takes whole milliseconds from 0 to 3600000");
            return;
        }
        options.cooldown = std::chrono::milliseconds{*number};
    }

    void parseMinAmplitude() {
        const auto number = parseNumber<double>(value("--min-amplitude needs a number"));
        if (!number || *number < 0.0 || *number > Options::highestMinAmplitude) {
            refuse("--min-amplitude takes a number from 0 to 100");
            return;
        }
        options.minAmplitude = *number;
    }

    void parseSensor() {
        options.sensor = value("--sensor needs a choice");
        if (!isSensorChoice(*options.sensor)) {
            refuse("--sensor takes auto, accelerometer, microphone or file:PATH");
        }
    }

    void chooseSounds(SoundSet set) {
        if (options.soundSet != SoundSet::pain) {
            refuse("--sexy, --halo and --custom exclude each other");
        }
        options.soundSet = set;
    }

    void refuse(const char* reason) {
        if (!error) {
            error = UsageError{reason};
        }
    }

    const std::vector<std::string>& arguments;
    std::size_t next = 0;
    Options options;
    std::optional<UsageError> error;
};

}  // namespace

std::variant<Options, UsageError> parseOptions(const std::vector<std::string>& arguments) {
    return Parser(arguments).parse();
}

bool isSensorChoice(const std::string& text) {
    return text == "auto" || text == "accelerometer" || text == "microphone" ||
           (text.starts_with("file:") && text.size() > 5);
}

}  // namespace bonkora::detector
