// KnockDetector: tells knocks on the computer's case from everything else in a sensor's signal.
// docs/detection.md explains the chain and its figures. One thread; its only clock is the signal.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "detector/Signal.h"
#include "detector/detection/Bands.h"
#include "detector/detection/Echo.h"
#include "detector/detection/Filter.h"
#include "detector/detection/Network.h"
#include "detector/detection/Tuning.h"

namespace bonkora::detector {

struct Sensitivity {
    double minAmplitude = 0.05;  // in the sensor's unit
    std::chrono::milliseconds cooldown{750};
    bool fast = false;  // half the cooldown, 0.7 times the minimum amplitude
};

struct Knock {
    std::uint64_t frame = 0;    // of the impact, counted from the first frame
    std::uint64_t decided = 0;  // the frame with which it was told
    // Of the filtered signal: a microphone's highest value, as a fraction of full scale; an
    // accelerometer's effective value in g, times what makes it a usual knock's highest value.
    double amplitude = 0.0;
};

// What a microphone heard that may be a knock.
struct Candidate {
    Knock knock;
    Bands::Features features;
    double loudness = 0.0;  // effective value of the second before, 50 to 3500 Hz
};

class KnockDetector {
  public:
    using Judge = std::function<bool(const Candidate&)>;

    KnockDetector(SensorKind kind, double rate, const Sensitivity& sensitivity);
    // Asks somebody else whether what a microphone heard is a knock; the training does.
    KnockDetector(SensorKind kind, double rate, const Sensitivity& sensitivity, Judge judge);

    // Appends the knocks that these frames complete. However a signal is cut into calls, its knocks
    // are the same.
    void process(std::span<const Frame> frames, std::vector<Knock>& knocks);

    // What the loudspeaker was given until now; `waiting`: frames that have arrived and are not yet
    // processed. A microphone's knocks must exceed its echo.
    void play(const Played& played, std::size_t waiting);

  private:
    // A millisecond of signal, or one reading where that is longer.
    struct Block {
        double peak = 0.0;
        double energy = 0.0;  // sum of squares
        std::uint64_t peakFrame = 0;
        bool begins = false;  // perhaps a knock
    };
    void filter(const Frame& frame);
    void endBlock(std::vector<Knock>& knocks);
    bool beginsKnock(const Block& block) const;
    void judge(std::vector<Knock>& knocks);
    void remember(const Block& block);
    const Block& past(std::size_t blocksAgo) const;
    double effectiveSince(std::size_t blocksAgo) const;
    double peakBetween(std::size_t oldestAgo, std::size_t newestAgo) const;
    std::size_t blocksIn(double seconds) const;

    const SensorKind kind;
    const double rate;
    const Tuning tuning;
    const double minAmplitude;
    const std::uint64_t cooldownFrames;
    const std::size_t blockSize;  // frames
    const std::size_t windowBlocks;
    const std::size_t decisionBlocks;  // from the impact to the report
    const std::size_t riseBlocks;
    const std::size_t lookBackBlocks;

    Frame origin{};  // the first frame: gravity is no knock
    std::array<Filter, 3> highPass;
    Filter lowPass;
    std::optional<Bands> bands;  // a microphone's
    std::optional<Echo> echo;    // likewise
    const Judge isKnock;

    std::uint64_t frameCount = 0;
    std::size_t blockFrames = 0;
    Block block;
    std::vector<Block> history;  // a ring, the newest at `newest`
    std::size_t newest = 0;
    std::size_t settling;          // blocks until the first candidate
    double ambientEnergy = 0.0;    // mean square of the signal's past
    double heldPeak = 0.0;         // of the last knock, fading
    std::uint64_t knownUntil = 0;  // frame; what begins before is part of the last knock
    std::uint64_t quietUntil = 0;  // frame
};

}  // namespace bonkora::detector
