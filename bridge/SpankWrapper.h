// SpankWrapper: the one controller. It holds the detector's settings and the live state that the
// panel shows, and starts, stops and listens to the detector. Main thread only; its background
// callbacks and delayed steps reach it through the main queue and hold it weakly, so it is always
// owned by a shared_ptr. Destroying it stops nothing: a running detector runs on.
//
// No operation fails towards its caller: each failure ends in `statusMessage` and on the console.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bridge/DetectorEvent.h"
#include "bridge/Mode.h"
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
    platform::Published<Mode> currentMode{*this, Mode::pain};
    // Slaps since the controller was created, over any number of starts. Never reset.
    platform::Published<std::int64_t> slapCount{*this, 0};
    // Of the last slap that carried one, in the detector's unit.
    platform::Published<double> lastAmplitude{*this, 0.0};
    platform::Published<std::string> statusMessage{*this, "Ready"};

    // Settings, written by the panel. Plain stored values: a running detector keeps what was on
    // its command line until it is started again.
    platform::Published<bool> volumeScaling{*this, true};
    platform::Published<bool> fastMode{*this, false};
    platform::Published<std::int64_t> cooldownMs{*this, 750};  // milliseconds
    platform::Published<double> minAmplitude{*this, 0.05};     // in the detector's unit
    platform::Published<std::string> customSoundPath{*this, ""};

    // Finds the detector and launches it with the current settings. Nothing while isRunning.
    void start();
    // Asks the launched process to end 0.5 s from now. Nothing unless isRunning.
    void stop();
    // stop(), and start() 1.0 s from now whether it was running or not.
    void restart();
    // Stores the mode; while isRunning also restarts, even if the mode is the same.
    void switchMode(Mode mode);

  private:
    std::optional<std::string> findSpankBinary() const;
    void launchWithSudo(const std::string& spankPath, const std::vector<std::string>& args);
    void launchDirectWithAuthorizationService(const std::string& spankPath,
                                              const std::vector<std::string>& args);
    void parseOutput(std::string_view text);
    void handleLine(std::string_view piece);
    void handleJSON(const DetectorEvent& event, std::string_view line);
    void countSlap();
    void startAfterPause();

    std::shared_ptr<platform::Process> spankProcess;
    // Neither pipe is ever filled: the launch keeps the output pipe, and the detector's standard
    // input is never connected. stop() still asks for the second.
    std::optional<platform::Pipe> stdoutPipe;
    std::optional<platform::Pipe> stdinPipe;
    std::string outputBuffer;
    const std::string spankBinaryName{"spank"};

    const platform::Platform platform;
};

}  // namespace bonkora
