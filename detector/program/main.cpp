// The detector's entry: reads the command line and the configuration, gives up root's rights, and
// runs the listener.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <iostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "detector/program/Configuration.h"
#include "detector/program/EventWriter.h"
#include "detector/program/Listener.h"
#include "detector/program/Options.h"
#include "detector/program/Requester.h"
#include "detector/program/SensorSource.h"
#include "detector/sound/Voice.h"
#include "platform/Bundle.h"
#include "platform/Descriptor.h"
#include "platform/SignalDescriptor.h"

namespace bonkora::detector {

namespace {

// Sends what the sound system's libraries write on standard error to /dev/null: an application may
// read it as part of the report. Returns the real standard error, for lines of our own.
platform::UniqueDescriptor silenceLibraries() {
    platform::UniqueDescriptor real{::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)};
    const platform::UniqueDescriptor nowhere{::open("/dev/null", O_WRONLY | O_CLOEXEC)};
    if (nowhere) {
        ::dup2(nowhere.get(), STDERR_FILENO);
    }
    return real;
}

Voice::Settings voiceSettings(const Options& options, const Configuration& configuration,
                              const platform::Bundle& bundle) {
    Voice::Settings settings;
    settings.set = options.soundSet;
    settings.soundsFolder = configuration.soundsFolder.empty()
                                ? bundle.pathForResource("sounds").value_or("sounds")
                                : configuration.soundsFolder;
    settings.customFolder = options.customFolder;
    settings.scalesWithForce = options.volumeScaling;
    settings.minAmplitude = options.minAmplitude;
    return settings;
}

std::unique_ptr<Voice> openVoice(const Voice::Settings& settings, int standardError) {
    auto opened = Voice::open(settings);
    if (!opened) {
        platform::writeAll(standardError, "spank: " + opened.error() + "\n");
        return Voice::waiting(settings);
    }
    return *std::move(opened);
}

// Ends the program a tenth of a second after it was told to, or after its reader has gone, even
// while the main thread waits for a device or a sound server that does not answer. Usually the
// listener is through long before.
void endInTime(int signalDescriptor) {
    std::thread{[signalDescriptor] {
        constexpr std::chrono::milliseconds graceful{80};
        std::array<pollfd, 2> reasons{
            {{signalDescriptor, POLLIN, 0}, {STDOUT_FILENO, readerGoes, 0}}};
        const auto& [signals, output] = reasons;
        while (signals.revents == 0 && !readerHasGone(output.revents)) {
            if (::poll(reasons.data(), reasons.size(), -1) < 0 && errno != EINTR) {
                break;
            }
            if (cannotBePolled(output.revents)) {
                reasons[1].fd = -1;
            }
        }
        std::this_thread::sleep_for(graceful);
        ::_exit(0);
    }}.detach();
}

int listen(const Options& options, const platform::Bundle& bundle) {
    const auto standardError = silenceLibraries();
    // Before any thread exists. The listener polls them beside its sensor.
    const platform::SignalDescriptor signals{SIGTERM, SIGINT, SIGHUP};
    EventWriter writer{STDOUT_FILENO, options.stdio};

    // What only root may open is opened first; whatever a user names, the user opens.
    std::vector<OpenedAccelerometer> accelerometers;
    const SystemRoots roots{options.sysfsRoot, options.deviceRoot};
    const auto requester = findRequester();
    if (!requester) {
        writer.error(requester.error());
        return 1;
    }
    if (const auto& user = *requester) {
        accelerometers = openAccelerometers(roots);
        if (!become(*user)) {
            writer.error("the rights of root could not be given up");
            return 1;
        }
    }
    endInTime(signals.get());  // a thread: after root's rights have been given up

    const Configuration configuration = readConfiguration();
    const SensorChoice choice{options.sensor.value_or(configuration.sensor), configuration.device,
                              options.asFastAsPossible, roots};
    const auto openChosen = [&] { return openSensor(choice, std::exchange(accelerometers, {})); };
    const bool isMute = configuration.mute || options.asFastAsPossible;
    const auto voice =
        isMute ? nullptr
               : openVoice(voiceSettings(options, configuration, bundle), standardError.get());
    Listener::Settings settings;
    settings.sensitivity = {options.minAmplitude, options.cooldown, options.fast};
    settings.once = options.once;
    settings.obeysInput = options.stdio;
    settings.signalDescriptor = signals.get();
    for (const auto& complaint : configuration.complaints) {
        settings.complaints.push_back("configuration: " + complaint);
    }
    return Listener{settings, writer, openChosen, voice.get()}.run();
}

int run(const platform::Bundle& bundle) {
    auto arguments = bundle.arguments;
    if (!arguments.empty()) {
        arguments.erase(arguments.begin());  // the program's name
    }
    const auto options = parseOptions(arguments);
    if (!options) {
        std::cerr << "spank: " << options.error() << "\n" << helpText << "\n";
        return 2;
    }
    switch (options->task) {
        case Options::Task::showHelp:
            std::cout << helpText << std::endl;
            return 0;
        case Options::Task::showVersion:
            std::cout << versionText << std::endl;
            return 0;
        case Options::Task::listSensors:
            for (const auto& line : listSensors({options->sysfsRoot, options->deviceRoot})) {
                std::cout << line << std::endl;
            }
            return 0;
        case Options::Task::listen:
            break;
    }
    return listen(*options, bundle);
}

}  // namespace

}  // namespace bonkora::detector

int main(int argumentCount, char** arguments) {
    bonkora::platform::prepareStandardStreams();
    return bonkora::detector::run(bonkora::platform::Bundle::main(argumentCount, arguments));
}
