#include "detector/program/Options.h"

#include <cstddef>

#include "detector/Number.h"

namespace bonkora::detector {

namespace {

class Parser {
  public:
    explicit Parser(const std::vector<std::string>& theArguments) : arguments(theArguments) {}

    platform::Result<Options> parse() {
        while (next < arguments.size() && !error) {
            parseOption(arguments[next++]);
        }
        if (error) {
            return platform::Failed{*error};
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
            error = reason;
        }
    }

    const std::vector<std::string>& arguments;
    std::size_t next = 0;
    Options options;
    std::optional<std::string> error;
};

}  // namespace

platform::Result<Options> parseOptions(const std::vector<std::string>& arguments) {
    return Parser(arguments).parse();
}

bool isSensorChoice(const std::string& text) {
    return text == "auto" || text == "accelerometer" || text == "microphone" ||
           (text.starts_with("file:") && text.size() > 5);
}

const std::string_view helpText = R"(Usage: spank [OPTION]...
Listens for knocks on this computer's case, reports each and answers with a sound.

  --stdio               report events as JSON, one object a line; end on the line "quit"
  --cooldown MS         silence after each knock, 0 to 3600000 milliseconds (750)
  --min-amplitude X     weakest knock that counts, 0 to 100 (0.05): g for an accelerometer,
                        fraction of full scale for a microphone
  --fast                half the cooldown, 0.7 times the minimum amplitude
  --volume-scaling      harder knocks sound louder

  --sexy                teasing voices, keener the faster you knock
  --halo                a solemn choir
  --custom DIR          the folder's own MP3, OGG, FLAC and WAV files
                        (without any of the three: cries of pain)

  --sensor auto         an accelerometer of at least 200 readings a second, or the microphone
  --sensor accelerometer (at least 50 readings a second) | microphone
  --sensor file:PATH    a recording: WAV (sound) or CSV (time in s, x, y, z in g)
  --as-fast-as-possible read the recording without waiting, and without sound
  --once                end with status 1 when there is no sensor, instead of waiting for one
  --list-sensors        show what is there, and end
  --help, --version     show this, or the version, and end

For trying out: --sysfs DIR and --dev DIR name other folders than /sys and /dev.

Configuration, read from ~/.config/Bonkora/spank.conf ($XDG_CONFIG_HOME counts where it is
set; started by Bonkora it never is):
  sensor = auto         as --sensor, where the command line does not say
  device = NAME         of the accelerometer or microphone, as --list-sensors shows it
  sounds = DIR          a folder with pain, sexy and halo in place of the built-in ones
  mute = yes            count, but keep quiet
Lines that begin with # are comments.

Exit status: 0 ended as asked or at the end of a recording, 1 no sensor, 2 wrong command line.)";

const std::string_view versionText = "spank " BONKORA_VERSION;

}  // namespace bonkora::detector
