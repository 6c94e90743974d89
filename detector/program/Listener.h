// Listener: the detector at work. It waits for a sensor, reads it, reports knocks, and ends when it
// is asked to, when nobody reads its report any more, or when a recording is over. Main thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "detector/detection/KnockDetector.h"
#include "detector/program/EventWriter.h"
#include "detector/sensing/Sensor.h"
#include "detector/sound/Voice.h"

namespace bonkora::detector {

class Listener {
  public:
    // The open sensor, or why there is none.
    using OpenSensor = std::function<OpenedSensor()>;

    struct Settings {
        Sensitivity sensitivity;
        bool once = false;        // end instead of waiting for a sensor
        bool obeysInput = false;  // the line "quit" on standard input ends it
        int inputDescriptor = 0;
        int outputDescriptor = 1;
        int signalDescriptor = -1;              // readable when the program is to end
        std::chrono::milliseconds pause{1000};  // between two looks for a sensor
        // A sensor that gives no readings for longer has failed without saying so.
        std::chrono::milliseconds longestSilence{3000};
        // What went wrong before the start; reported after "ready", which would wipe it off the
        // panel.
        std::vector<std::string> complaints;
    };

    // `voice` may be null: knocks are then counted in silence.
    Listener(Settings settings, EventWriter& writer, OpenSensor openSensor, Voice* voice);

    // The exit status.
    int run();

  private:
    enum class Wake { sensor, timeout, ending };

    // Waits for whatever happens first; a timeout of -1 is none.
    Wake wait(int timeoutMs);
    bool asksToQuit();
    void open();
    void announce();
    void missReadings();
    void read();
    void report(const Knock& knock);
    void complain();
    void lose(const std::string& reason);
    void letItFinish();

    Settings settings;
    EventWriter& writer;
    const OpenSensor openSensor;
    Voice* const voice;
    std::unique_ptr<Sensor> sensor;
    std::unique_ptr<KnockDetector> detector;
    std::vector<Frame> frames;
    std::vector<Knock> knocks;
    std::uint64_t frameCount = 0;  // of this sensor
    double timeBefore = 0.0;       // s of signal of the sensors before it
    bool isSilent = false;
    std::string lastReason;  // reported last; each is reported once until a sensor opens
    std::string input;       // the unfinished line
    bool inputIsOpen;
    bool isOver = false;
    int status = 0;
};

}  // namespace bonkora::detector
