// The detector's entry: command line, configuration, and the listener between them.
#include <fcntl.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "detector/program/Configuration.h"
#include "detector/program/EventWriter.h"
#include "detector/program/HelpText.h"
#include "detector/program/Listener.h"
#include "detector/program/Options.h"
#include "detector/program/SensorSource.h"
#include "platform/StandardStreams.h"
#include "platform/UniqueDescriptor.h"

namespace bonkora::detector {

namespace {

// The requests to end arrive as something to read, so that they are met between two readings. Must
// be called before any thread exists: each inherits what is blocked.
platform::UniqueDescriptor endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, number);
    }
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return platform::UniqueDescriptor{::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK)};
}

// The sound system's libraries talk to people on standard error, which an application reads as if
// it were the report.
void silenceLibraries() {
    const platform::UniqueDescriptor nowhere{::open("/dev/null", O_WRONLY | O_CLOEXEC)};
    if (nowhere) {
        ::dup2(nowhere.get(), STDERR_FILENO);
    }
}

int listen(const Options& options) {
    if (options.stdio) {
        silenceLibraries();
    }
    const auto signals = endingSignals();
    EventWriter writer{STDOUT_FILENO, options.stdio};
    const Configuration configuration = readConfiguration();
    for (const auto& complaint : configuration.complaints) {
        writer.error("configuration: " + complaint);
    }
    SensorChoice choice;
    choice.sensor = options.sensor.value_or(configuration.sensor);
    choice.device = configuration.device;
    choice.asFastAsPossible = options.asFastAsPossible;
    choice.roots = {options.sysfsRoot, options.deviceRoot};

    Listener::Settings settings;
    settings.sensitivity = {options.minAmplitude, options.cooldown, options.fast};
    settings.once = options.once;
    settings.obeysInput = options.stdio;
    settings.signalDescriptor = signals.get();
    return Listener{settings, writer, [&] { return openSensor(choice); }}.run();
}

int run(const std::vector<std::string>& arguments) {
    const auto parsed = parseOptions(arguments);
    if (const auto* const error = std::get_if<UsageError>(&parsed)) {
        std::cerr << "spank: " << error->reason << "\n" << helpText << "\n";
        return 2;
    }
    const auto& options = std::get<Options>(parsed);
    switch (options.task) {
        case Options::Task::showHelp:
            std::cout << helpText << std::endl;
            return 0;
        case Options::Task::showVersion:
            std::cout << versionText << std::endl;
            return 0;
        case Options::Task::listSensors:
            for (const auto& line : listSensors({options.sysfsRoot, options.deviceRoot})) {
                std::cout << line << std::endl;
            }
            return 0;
        case Options::Task::listen:
            break;
    }
    return listen(options);
}

}  // namespace

}  // namespace bonkora::detector

int main(int argumentCount, char** arguments) {
    bonkora::platform::prepareStandardStreams();
    return bonkora::detector::run({arguments + 1, arguments + argumentCount});
}
