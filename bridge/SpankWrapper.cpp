#include "bridge/SpankWrapper.h"

#include <limits>
#include <utility>

#include "bridge/CommandLine.h"
#include "bridge/LaunchTexts.h"
#include "bridge/Locator.h"
#include "bridge/OutputLines.h"
#include "platform/Console.h"
#include "platform/FileManager.h"
#include "platform/Text.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;

constexpr auto pauseBeforeTermination = 500ms;
constexpr auto pauseBeforeNewStart = 1000ms;
constexpr auto launcherScriptLife = 2000ms;

constexpr mode_t launcherPermissions = 0755;
constexpr mode_t pipePermissions = 0644;

}  // namespace

std::shared_ptr<SpankWrapper> SpankWrapper::create(platform::Platform platform) {
    return std::make_shared<SpankWrapper>(Key{}, std::move(platform));
}

SpankWrapper::SpankWrapper(Key, platform::Platform thePlatform)
    : platform(std::move(thePlatform)) {}

SpankWrapper::~SpankWrapper() = default;

void SpankWrapper::start() {
    if (isRunning) {
        return;
    }
    const std::optional<std::string> spankPath = findSpankBinary();
    if (!spankPath) {
        statusMessage = "spank binary not found!";
        platform.console->print("❌ Could not find spank binary");
        return;
    }
    platform.console->print("🔧 Found spank at: " + *spankPath);
    launchWithSudo(*spankPath, detectorArguments({.mode = currentMode,
                                                  .cooldownMs = cooldownMs,
                                                  .minAmplitude = minAmplitude,
                                                  .volumeScaling = volumeScaling,
                                                  .fastMode = fastMode,
                                                  .customSoundPath = customSoundPath}));
}

std::optional<std::string> SpankWrapper::findSpankBinary() const {
    for (std::string& candidate : candidatePaths(platform.bundle)) {
        if (platform::fileExists(candidate)) {
            return std::move(candidate);
        }
    }
    return std::nullopt;
}

void SpankWrapper::launchWithSudo(const std::string& spankPath,
                                  const std::vector<std::string>& args) {
    statusMessage = "Requesting admin access...";
    launchDirectWithAuthorizationService(spankPath, args);
}

void SpankWrapper::launchDirectWithAuthorizationService(const std::string& spankPath,
                                                        const std::vector<std::string>& args) {
    // Script and pipes are left for people to look at; nothing of the launch depends on them.
    const std::string folder = platform.temporaryDirectory();
    const std::string scriptPath = folder + "bonkora_launcher.sh";
    platform::writeAtomically(scriptPath, launcherScript(spankPath, args));
    platform::setPermissions(scriptPath, launcherPermissions);
    platform::makeNamedPipe(folder + "bonkora_output", pipePermissions);
    platform::makeNamedPipe(folder + "bonkora_input", pipePermissions);

    const std::shared_ptr<platform::Process> process = platform.makeProcess();
    process->executablePath = platform.runnerPath();
    process->arguments = {"-e", appleScriptText(privilegedCommand(spankPath, args))};
    process->readabilityHandler = [weakSelf = weak_from_this(),
                                   queue = platform.mainQueue](std::string_view chunk) {
        if (chunk.empty() || !platform::isValidUtf8(chunk)) {
            return;
        }
        queue->async([weakSelf, text = std::string(chunk)] {
            if (const auto self = weakSelf.lock()) {
                self->parseOutput(text);
            }
        });
    };
    process->terminationHandler = [weakSelf = weak_from_this(), queue = platform.mainQueue,
                                   console = platform.console](int status) {
        queue->async([weakSelf, console, status] {
            if (const auto self = weakSelf.lock()) {
                self->isRunning = false;
            }
            if (const auto self = weakSelf.lock()) {
                self->statusMessage =
                    status == 0 ? "Stopped" : "Error (code: " + std::to_string(status) + ")";
            }
            console->print("⏹ Spank process ended with code: " + std::to_string(status));
        });
    };

    if (const auto error = process->run()) {
        statusMessage = "Failed to launch: " + error->localizedDescription();
        platform.console->print("❌ Failed to launch spank: " + error->description());
    } else {
        spankProcess = process;
        isRunning = true;
        statusMessage = "Listening for slaps...";
        platform.console->print("✅ Spank launched with sudo (PID: " +
                                std::to_string(process->processIdentifier()) + ")");
    }
    platform.globalQueue->asyncAfter(launcherScriptLife,
                                     [scriptPath] { platform::removeItem(scriptPath); });
}

void SpankWrapper::parseOutput(std::string_view text) {
    // What the buffer held is already known to have no line feed: only the new text is searched.
    std::size_t lineFeed = text.find('\n');
    if (lineFeed == std::string_view::npos) {
        outputBuffer += text;
        return;
    }
    // Handled from locals: a line's console output or an observer must not see a half-split buffer.
    std::string firstLine = std::exchange(outputBuffer, std::string());
    outputBuffer = text.substr(text.rfind('\n') + 1);
    firstLine += text.substr(0, lineFeed);
    const platform::Console::Burst burst(*platform.console);
    handleLine(firstLine);
    for (std::size_t start = lineFeed + 1;
         (lineFeed = text.find('\n', start)) != std::string_view::npos; start = lineFeed + 1) {
        handleLine(text.substr(start, lineFeed - start));
    }
}

void SpankWrapper::handleLine(std::string_view piece) {
    const std::string_view line = platform::trimmed(piece);
    if (line.empty()) {
        return;
    }
    if (auto object = platform::readJsonObject(line)) {
        handleJSON({std::move(*object)}, line);
        return;
    }
    platform.console->print("📋 spank: " + std::string(line));
    if (plainLineCountsAsSlap(line)) {
        countSlap();
    }
}

void SpankWrapper::handleJSON(const DetectorEvent& event, std::string_view line) {
    const std::string* const type = event.type();
    if (type == nullptr) {
        return;
    }
    if (*type == "slap" || *type == "hit") {
        countSlap();
        if (const auto amplitude = event.amplitude()) {
            lastAmplitude = *amplitude;
        }
        platform.console->print("👋 Slap #" + platform::decimal(slapCount) +
                                " (amplitude: " + platform::shortestDecimal(lastAmplitude) + ")");
    } else if (*type == "ready") {
        statusMessage = "Listening for slaps...";
        platform.console->print("✅ Spank ready");
    } else if (*type == "error") {
        if (const std::string* const message = event.message()) {
            statusMessage = "Error: " + *message;
            platform.console->print("❌ Spank error: " + *message);
        }
    } else {
        // As it came: it is whole, on one line, and nobody has to rebuild it.
        platform.console->print("📋 spank event: " + std::string(line));
    }
}

void SpankWrapper::countSlap() {
    if (slapCount == std::numeric_limits<std::int64_t>::max()) {
        platform.console->flush();
        platform::fatalError("the slap count overflows");
    }
    slapCount = slapCount + 1;
}

void SpankWrapper::stop() {
    if (!isRunning) {
        return;
    }
    if (stdinPipe) {
        platform::writeAll(stdinPipe->fileHandleForWriting.get(), "quit\n");
    }
    // An observer of one assignment may let the controller go, so each step asks again.
    platform.mainQueue->asyncAfter(
        pauseBeforeTermination, [weakSelf = weak_from_this(), console = platform.console] {
            if (const auto self = weakSelf.lock(); self && self->spankProcess) {
                self->spankProcess->terminate();
            }
            if (const auto self = weakSelf.lock()) {
                self->spankProcess = nullptr;
            }
            if (const auto self = weakSelf.lock()) {
                self->isRunning = false;
            }
            if (const auto self = weakSelf.lock()) {
                self->statusMessage = "Stopped";
            }
            console->print("⏹ Spank stopped");
        });
}

void SpankWrapper::restart() {
    stop();
    startAfterPause();
}

void SpankWrapper::switchMode(Mode mode) {
    if (!isRunning) {
        currentMode = mode;
        return;
    }
    stop();
    currentMode = mode;
    startAfterPause();
}

void SpankWrapper::startAfterPause() {
    platform.mainQueue->asyncAfter(pauseBeforeNewStart, [weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) {
            self->start();
        }
    });
}

}  // namespace bonkora
