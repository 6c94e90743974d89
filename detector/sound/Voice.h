// Voice: the detector's answer to a knock. Main thread.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "detector/Signal.h"
#include "detector/sound/SoundChoice.h"
#include "platform/Result.h"

namespace bonkora::detector {

// The force that is answered at full volume: 1 of full scale for a microphone, 4 g for an
// accelerometer.
double fullForce(SensorKind kind);

// The part of full volume, 0.05 to 1: 26 dB below it for a knock at the minimum amplitude, full
// from fullForce() on, and in between the same number of dB for each doubling of the force. A
// minimum below a thousandth counts as that; one of full force or more gives full volume.
double loudnessFor(double amplitude, double minAmplitude, SensorKind kind);

class Voice {
  public:
    Voice() = default;
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;
    virtual ~Voice() = default;

    // Answers a knock of `amplitude` in the sensor's unit at `time` s of the signal. Returns at
    // once; sounds that overlap are mixed, the oldest giving way beyond 16.
    virtual void answer(double amplitude, SensorKind kind, double time) = 0;
    // Whether a sound is still to be heard.
    virtual bool isSounding() const = 0;
    // What the loudspeaker was given since the last call.
    virtual Played takePlayed() = 0;
    // What went wrong since the last call, for people.
    virtual std::optional<std::string> takeComplaint() = 0;
    // Closes the sound device; the next answer opens it anew.
    virtual void letGo() = 0;

    struct Settings {
        SoundSet set = SoundSet::pain;
        std::string soundsFolder;  // holds pain, sexy and halo
        std::string customFolder;
        bool scalesWithForce = false;
        double minAmplitude = 0.05;  // of the softest knock that counts
    };

    // The voice through the default sound device, or why there is none.
    static platform::Result<std::unique_ptr<Voice>> open(const Settings& settings);
    // Keeps quiet until a knock finds a sound device; looks for one at most every 5 s.
    static std::unique_ptr<Voice> waiting(const Settings& settings);
};

}  // namespace bonkora::detector
