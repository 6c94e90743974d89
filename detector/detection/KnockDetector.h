// KnockDetector: tells knocks on the computer's case from everything else in a sensor's signal.
// docs/detection.md explains the chain and its figures. One thread; its only clock is the signal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "detector/detection/Filter.h"
#include "detector/detection/Tuning.h"
#include "detector/sensing/Sensor.h"

namespace bonkora::detector {

struct Sensitivity {
    double minAmplitude = 0.05;  // in the sensor's unit
    std::chrono::milliseconds cooldown{750};
    bool fast = false;  // half the cooldown, 0.7 times the minimum amplitude
};

struct Knock {
    std::uint64_t frame = 0;    // of the impact, counted from the first frame
    std::uint64_t decided = 0;  // the frame with which it was told
    // The highest value of the filtered signal: g, or fraction of full scale.
    double amplitude = 0.0;
};

class KnockDetector {
  public:
    KnockDetector(SensorKind kind, double rate, const Sensitivity& sensitivity);

    // Appends the knocks that these frames complete. However a signal is cut into calls, its knocks
    // are the same.
    void process(std::span<const Frame> frames, std::vector<Knock>& knocks);

  private:
    // A millisecond of signal, or one reading where that is longer.
    struct Block {
        float peak = 0.0F;
        float clickPeak = 0.0F;  // of the high band; microphones only
        double energy = 0.0;     // sum of squares
        std::uint64_t peakFrame = 0;
    };
    // An impact that is being looked at.
    struct Candidate {
        Block first;
        float peak = 0.0F;
        float earlyPeak = 0.0F;  // within the rise time
        float latePeak = 0.0F;   // after half of the window
        float clickPeak = 0.0F;
        std::size_t blocks = 0;
    };

    void filter(const Frame& frame);
    void endBlock(std::vector<Knock>& knocks);
    bool beginsKnock(const Block& block) const;
    void follow(const Block& block);
    bool isKnock(const Candidate& candidate) const;
    void remember(const Block& block);
    const Block& past(std::size_t blocksAgo) const;
    std::size_t blocksIn(double seconds) const;

    const SensorKind kind;
    const double rate;
    const Tuning tuning;
    const double minAmplitude;
    const std::uint64_t cooldownFrames;
    const std::size_t blockSize;  // frames

    Frame origin{};  // the first frame: gravity is no knock
    std::array<Filter, 3> highPass;
    Filter lowPass;
    Filter click;

    std::uint64_t frameCount = 0;
    std::size_t blockFrames = 0;
    Block block;
    std::vector<Block> history;  // a ring, the newest at `newest`
    std::size_t newest = 0;
    std::size_t settling;        // blocks until the first candidate
    double ambientEnergy = 0.0;  // mean square of the signal's past
    double heldPeak = 0.0;       // of the last candidate, fading
    Candidate candidate;
    bool isFollowing = false;
    std::uint64_t quietUntil = 0;  // frame
};

}  // namespace bonkora::detector
