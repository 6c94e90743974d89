// Bands: how strong a microphone's sound is in nine bands from 50 to 3500 Hz, from millisecond to
// millisecond, and what the network makes its judgement from. One thread.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "detector/detection/Filter.h"

namespace bonkora::detector {

class Bands {
  public:
    static constexpr std::size_t count = 9;
    static constexpr std::size_t frames = 30;  // of two blocks, 60 ms together
    static constexpr std::size_t averages = 3;
    static constexpr std::size_t featureCount = (frames + averages) * count;
    using Features = std::array<float, featureCount>;
    static constexpr std::size_t lanes = 12;  // a few idle ones: whole vectors are quicker
    using Levels = std::array<float, lanes>;  // the mean square in each band

    // `rate` in Hz; `blockSeconds`: between two calls of endBlock().
    Bands(double rate, double blockSeconds);

    void hear(float sample) {
        const float smooth = soften[1](soften[0](sample));
        if (++waiting == decimation) {
            waiting = 0;
            split(smooth);
        }
    }
    void endBlock();

    // Of the last 60 ms and of what lay before them. All relative to the strongest band in the 60
    // ms, so that neither a microphone's gain nor the user's threshold matters.
    Features features() const;

    // The effective value of about the last second before these 60 ms, all bands together.
    double loudness() const;

    // Of the block that ended last.
    const Levels& newestBlock() const { return history[newest]; }

  private:
    struct Stage {
        Levels b0{}, b1{}, b2{}, a1{}, a2{}, state1{}, state2{};
    };

    void split(float sample);

    const std::size_t decimation;
    std::array<Filter, 2> soften;  // against what decimation would fold down
    std::array<Stage, 2> stages;   // high-passes, then low-passes
    std::size_t waiting = 0;
    std::size_t samples = 0;  // in this block
    Levels energy{};          // sum of squares of this block

    std::vector<Levels> history;  // a ring of blocks' mean squares, the newest at `newest`
    std::size_t newest = 0;
    std::array<float, averages> steps{};
    std::array<Levels, averages> slow{};  // means of what lay before the history
};

}  // namespace bonkora::detector
