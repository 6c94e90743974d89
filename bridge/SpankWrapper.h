// SpankWrapper: the one controller. It holds the detector's settings and the live state that the
// panel shows, and starts, stops and listens to the detector. Main thread only; its background
// callbacks and delayed steps reach it through the main queue and hold it weakly, so it is always
// owned by a shared_ptr. Destroying it stops nothing: a running detector runs on. All else in this
// room is values and functions without state, for any thread.
//
// No operation fails towards its caller: each failure ends in `statusMessage` and on the console.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bridge/DetectorOutput.h"
#include "bridge/DetectorSettings.h"
#include "platform/Descriptor.h"
#include "platform/ObservableObject.h"
#include "platform/Platform.h"

namespace bonkora {

class SpankWrapper final : public platform::ObservableObject,
                           public std::enable_shared_from_this<SpankWrapper> {
    struct Key {};  // makes the constructor create()'s alone

  public:
    using Mode = bonkora::Mode;

    static std::shared_ptr<SpankWrapper> create(platform::Platform platform);
    SpankWrapper(Key, platform::Platform platform);
    SpankWrapper(const SpankWrapper&) = delete;
    SpankWrapper& operator=(const SpankWrapper&) = delete;
    ~SpankWrapper();

    // Live state, written by the controller.
    platform::Published<bool> isRunning{*this, false};
    platform::Published<Mode> currentMode{*this, DetectorSettings{}.mode};
    // Slaps since the controller was created, over any number of starts. Never reset.
    platform::Published<std::int64_t> slapCount{*this, 0};
    // Of the last slap that carried one, in the detector's unit.
    platform::Published<double> lastAmplitude{*this, 0.0};
    platform::Published<std::string> statusMessage{*this, "Ready"};

    // Settings, written by the panel. Plain stored values: a running detector keeps what was on
    // its command line until it is started again.
    platform::Published<bool> volumeScaling{*this, DetectorSettings{}.volumeScaling};
    platform::Published<bool> fastMode{*this, DetectorSettings{}.fastMode};
    platform::Published<std::int64_t> cooldownMs{*this, DetectorSettings{}.cooldownMs};
    platform::Published<double> minAmplitude{*this, DetectorSettings{}.minAmplitude};
    platform::Published<std::string> customSoundPath{*this, DetectorSettings{}.customSoundPath};

    // Finds the detector and launches it with the current settings. Nothing while isRunning.
    void start();
    // Asks the launched process to end 0.5 s from now. Nothing unless isRunning.
    void stop();
    // stop(), and start() 1.0 s from now whether it was running or not.
    void restart();
    // Stores the mode; while isRunning also restarts, even if the mode is the same.
    void switchMode(Mode mode);

  private:
    DetectorSettings settings() const;
    std::optional<std::string> findSpankBinary() const;
    void launchWithSudo(const std::string& spankPath, const std::vector<std::string>& args);
    void launchDirectWithAuthorizationService(const std::string& spankPath,
                                              const std::vector<std::string>& args);
    // The steps of a launch, in their order.
    static void writeLauncherScript(const std::string& path, const std::string& text);
    static void makeNamedPipes(const std::string& folder);
    std::shared_ptr<platform::Process> makeRunner(const std::string& command) const;
    void readOutputOf(platform::Process& runner);
    void awaitEndOf(platform::Process& runner);
    void launched(std::shared_ptr<platform::Process> runner);
    void failedToLaunch(const platform::LaunchError& error);
    void removeLater(const std::string& path) const;

    void parseOutput(std::string_view text);
    void handleLine(std::string_view line);
    void handleJSON(const DetectorEvent& event, std::string_view line);
    void countSlap();
    void printSlap() const;
    void startAfterPause();

    std::shared_ptr<platform::Process> spankProcess;
    // Two pipes that stay empty and a name that nobody reads: the controller's contract has them.
    // The launch keeps the output pipe to itself, the detector's standard input is never connected,
    // though stop() asks for its pipe, and the search for the detector knows the name by itself.
    std::optional<platform::Pipe> stdoutPipe;
    std::optional<platform::Pipe> stdinPipe;
    const std::string spankBinaryName{"spank"};
    std::string outputBuffer;
    // Of every runner whose output is still read.
    std::vector<std::weak_ptr<platform::Backlog>> backlogs;

    const platform::Platform platform;
};

}  // namespace bonkora
