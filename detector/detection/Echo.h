// Echo: what a microphone hears of the program's own answers. It compares the microphone's bands
// with those of the sound that is being played, finds out how late and how loud that arrives, and
// tells what is too much to be its echo. One thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "detector/Signal.h"
#include "detector/detection/Bands.h"

namespace bonkora::detector {

class Echo {
  public:
    // `blockSeconds`: between two calls of hear().
    explicit Echo(double blockSeconds);

    // What the loudspeaker was given, and how much of the microphone's signal had arrived by then,
    // in s: more of it may be on its way to hear().
    void play(const Played& played, double heardSeconds);
    // A block of the microphone's signal.
    void hear(const Bands::Levels& block);

    // Whether what was heard in the last so many blocks may be an answer's echo and nothing else.
    bool explains(std::size_t blocks) const;

  private:
    using Levels = Bands::Levels;
    using Index = std::int64_t;  // of a frame: a few blocks

    // The last two seconds, by the frames' numbers since the beginning.
    class Ring {
      public:
        Levels& operator[](Index frame) { return frames[place(frame)]; }
        const Levels& operator[](Index frame) const { return frames[place(frame)]; }

      private:
        static constexpr std::size_t size = 512;
        static std::size_t place(Index frame) { return static_cast<std::size_t>(frame) % size; }
        std::vector<Levels> frames = std::vector<Levels>(size);
    };

    void skipSilence(std::uint64_t samples);
    void endPlayedBlock();
    void endPlayedFrame();
    void align(double heardSeconds);
    float playedAt(const Ring& ring, Index frame, std::size_t band) const;
    Index soundingFrames(Index from) const;
    void learn();
    double likenessAt(Index atLag) const;
    void learnGain(Index shift);
    void learnBound(Index base);

    const double blockSeconds;
    std::optional<Bands> reference;  // of what is played
    double referenceRate = 0.0;
    std::uint64_t playedSamples = 0;
    std::uint64_t playedBlocks = 0;
    Levels playedSum{};
    Index playedFrames = 0;
    Index lastSounding = -1;
    Ring played;
    Ring fading;  // what was played, as a room lets it die away

    std::size_t heardBlocks = 0;
    Levels heardSum{};
    Index heardFrames = 0;
    Ring heard;

    // The microphone's frame that arrived while frame 0 was handed out, as an average: both streams
    // come in pieces.
    std::optional<double> origin;
    double unsteadiness = 0.0;  // frames by which that was lately missed
    std::vector<double> alike;  // at each lag, the mean of the looks
    int looks = 0;
    std::optional<Index> lag;  // frames from there to the echo
    int agreeing = 0;          // looks that found the same
    // By how much an echo is louder than what was played: known with the lag, or at most.
    std::optional<Levels> gain;
};

}  // namespace bonkora::detector
