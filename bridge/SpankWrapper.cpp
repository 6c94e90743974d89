#include "bridge/SpankWrapper.h"

#include <limits>
#include <utility>

#include "bridge/LaunchTexts.h"
#include "bridge/Locator.h"
#include "platform/Console.h"
#include "platform/FileManager.h"
#include "platform/Text.h"

namespace bonkora {
namespace {

using namespace std::chrono_literals;

// Between the two lies the time in which the old runner ends its detector: at least
// runner/ElevatedLink.h's endingTime, 400 ms, or the new one meets the old.
constexpr auto pauseBeforeTermination = 500ms;
constexpr auto pauseBeforeNewStart = 1000ms;
constexpr auto launcherScriptLife = 2000ms;

// Of one runner's output, in bytes: a runner that writes faster waits. Each chunk costs some more
// than its text.
constexpr std::size_t backlogCapacity = std::size_t{4} << 20U;
constexpr std::size_t chunkOverhead = 128;

// Of a slap's console line, in bytes; a longer one takes more memory.
constexpr std::size_t longestUsualSlap = 64;

constexpr mode_t launcherPermissions = 0755;
constexpr mode_t pipePermissions = 0644;

// Does `action` to the controller unless it is gone. An observer of an assignment may let it go, so
// of several steps each asks for itself.
template <typename Action>
void unlessGone(const std::weak_ptr<SpankWrapper>& weakSelf, const Action& action) {
    if (const auto self = weakSelf.lock()) {
        action(*self);
    }
}

}  // namespace

std::shared_ptr<SpankWrapper> SpankWrapper::create(platform::Platform platform) {
    return std::make_shared<SpankWrapper>(Key{}, std::move(platform));
}

SpankWrapper::SpankWrapper(Key, platform::Platform thePlatform)
    : platform(std::move(thePlatform)) {}

SpankWrapper::~SpankWrapper() {
    for (const auto& weakBacklog : backlogs) {
        if (const auto backlog = weakBacklog.lock()) {
            backlog->close();
        }
    }
}

// The operations hold the controller for their own length: an observer of one of their assignments
// may let it go.
void SpankWrapper::start() {
    const auto self = shared_from_this();
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
    launchWithSudo(*spankPath, detectorArguments(settings()));
}

DetectorSettings SpankWrapper::settings() const {
    return {.mode = currentMode,
            .cooldownMs = cooldownMs,
            .minAmplitude = minAmplitude,
            .volumeScaling = volumeScaling,
            .fastMode = fastMode,
            .customSoundPath = customSoundPath};
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
    const std::string folder = platform.temporaryDirectory();
    const std::string scriptPath = folder + "bonkora_launcher.sh";
    writeLauncherScript(scriptPath, launcherScript(spankPath, args));
    makeNamedPipes(folder);
    const auto runner = makeRunner(privilegedCommand(spankPath, args));
    readOutputOf(*runner);
    awaitEndOf(*runner);
    if (const auto started = runner->run()) {
        launched(runner);
    } else {
        failedToLaunch(started.error());
    }
    removeLater(scriptPath);
}

// Script and pipes are left for people to look at; nothing of the launch depends on them.
void SpankWrapper::writeLauncherScript(const std::string& path, const std::string& text) {
    platform::writeAtomically(path, text);
    platform::setPermissions(path, launcherPermissions);
}

void SpankWrapper::makeNamedPipes(const std::string& folder) {
    for (const char* const name : {"bonkora_output", "bonkora_input"}) {
        platform::makeNamedPipe(folder + name, pipePermissions);
    }
}

std::shared_ptr<platform::Process> SpankWrapper::makeRunner(const std::string& command) const {
    auto runner = platform.makeProcess();
    runner->executablePath = platform.runnerPath();
    runner->arguments = {"-e", appleScriptText(command)};
    return runner;
}

void SpankWrapper::readOutputOf(platform::Process& runner) {
    const auto backlog = std::make_shared<platform::Backlog>(backlogCapacity);
    std::erase_if(backlogs, [](const auto& other) { return other.expired(); });
    backlogs.push_back(backlog);
    runner.readabilityHandler = [weakSelf = weak_from_this(), queue = platform.mainQueue,
                                 backlog](std::string_view chunk) {
        if (chunk.empty() || weakSelf.expired() || !platform::isValidUtf8(chunk)) {
            return;
        }
        queue->async([weakSelf, text = std::string(chunk),
                      share = backlog->add(chunk.size() + chunkOverhead)] {
            unlessGone(weakSelf, [&](SpankWrapper& self) { self.parseOutput(text); });
        });
    };
}

void SpankWrapper::awaitEndOf(platform::Process& runner) {
    runner.terminationHandler = [weakSelf = weak_from_this(), queue = platform.mainQueue,
                                 console = platform.console](int status) {
        queue->async([weakSelf, console, status] {
            const std::string code = std::to_string(status);
            unlessGone(weakSelf, [](SpankWrapper& self) { self.isRunning = false; });
            unlessGone(weakSelf, [&](SpankWrapper& self) {
                self.statusMessage = status == 0 ? "Stopped" : "Error (code: " + code + ")";
            });
            console->print("⏹ Spank process ended with code: " + code);
        });
    };
}

void SpankWrapper::launched(std::shared_ptr<platform::Process> runner) {
    spankProcess = std::move(runner);
    const int identifier = spankProcess->processIdentifier();
    isRunning = true;
    statusMessage = "Listening for slaps...";
    platform.console->print("✅ Spank launched with sudo (PID: " + std::to_string(identifier) + ")");
}

void SpankWrapper::failedToLaunch(const platform::LaunchError& error) {
    statusMessage = "Failed to launch: " + error.localizedDescription();
    platform.console->print("❌ Failed to launch spank: " + error.description());
}

void SpankWrapper::removeLater(const std::string& path) const {
    platform.globalQueue->asyncAfter(launcherScriptLife, [path] { platform::removeItem(path); });
}

void SpankWrapper::parseOutput(std::string_view text) {
    // What the buffer held is already known to have no line feed: only the new text is searched.
    std::size_t lineFeed = text.find('\n');
    if (lineFeed == std::string_view::npos) {
        outputBuffer += text;
        return;
    }
    // The lines are handled from local variables: an observer must not see a half-split buffer.
    std::string firstLine = std::exchange(outputBuffer, std::string());
    outputBuffer = text.substr(text.rfind('\n') + 1);
    firstLine += text.substr(0, lineFeed);

    const platform::Console::Burst burst(*platform.console);
    handleLine(platform::trimmed(firstLine));
    for (;;) {
        text.remove_prefix(lineFeed + 1);
        lineFeed = text.find('\n');
        if (lineFeed == std::string_view::npos) {
            return;
        }
        handleLine(platform::trimmed(text.substr(0, lineFeed)));
    }
}

void SpankWrapper::handleLine(std::string_view line) {
    if (line.empty()) {
        return;
    }
    if (const auto event = readDetectorEvent(line)) {
        handleJSON(*event, line);
        return;
    }
    platform.console->print("📋 spank: " + std::string(line));
    if (plainLineCountsAsSlap(line)) {
        countSlap();
    }
}

void SpankWrapper::handleJSON(const DetectorEvent& event, std::string_view line) {
    switch (event.kind) {
        case DetectorEvent::Kind::slap:
            countSlap();
            if (event.amplitude) {
                lastAmplitude = *event.amplitude;
            }
            printSlap();
            break;
        case DetectorEvent::Kind::ready:
            statusMessage = "Listening for slaps...";
            platform.console->print("✅ Spank ready");
            break;
        case DetectorEvent::Kind::error:
            statusMessage = "Error: " + event.message;
            platform.console->print("❌ Spank error: " + event.message);
            break;
        case DetectorEvent::Kind::other:
            // Printed as it came, which is whole and on one line.
            platform.console->print("📋 spank event: " + std::string(line));
            break;
        case DetectorEvent::Kind::nothing:
            break;
    }
}

// In one piece of memory: a flood brings a million of these.
void SpankWrapper::printSlap() const {
    std::string text;
    text.reserve(longestUsualSlap);
    text += "👋 Slap #";
    text += platform::decimal(slapCount);
    text += " (amplitude: ";
    text += platform::shortestDecimal(lastAmplitude);
    text += ')';
    platform.console->print(text);
}

void SpankWrapper::countSlap() {
    if (slapCount == std::numeric_limits<std::int64_t>::max()) {
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
    platform.mainQueue->asyncAfter(
        pauseBeforeTermination, [weakSelf = weak_from_this(), console = platform.console] {
            unlessGone(weakSelf, [](SpankWrapper& self) {
                if (self.spankProcess) {
                    self.spankProcess->terminate();
                }
            });
            unlessGone(weakSelf, [](SpankWrapper& self) { self.spankProcess = nullptr; });
            unlessGone(weakSelf, [](SpankWrapper& self) { self.isRunning = false; });
            unlessGone(weakSelf, [](SpankWrapper& self) { self.statusMessage = "Stopped"; });
            console->print("⏹ Spank stopped");
        });
}

void SpankWrapper::restart() {
    stop();
    startAfterPause();
}

void SpankWrapper::switchMode(Mode mode) {
    const auto self = shared_from_this();
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
        unlessGone(weakSelf, [](SpankWrapper& self) { self.start(); });
    });
}

}  // namespace bonkora
