#include "detector/detection/Echo.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace bonkora::detector {

namespace {

constexpr std::size_t blocksPerFrame = 4;
// In frames of four blocks, some 4 ms.
constexpr std::int64_t earliestLag = -10;    // pieces may be late
constexpr std::int64_t latestLag = 140;      // wireless loudspeakers
constexpr std::int64_t roomsTail = 25;       // in which an echo dies away
constexpr std::int64_t compared = 192;       // frames to learn from
constexpr std::int64_t fewestSounding = 40;  // of them
constexpr std::int64_t learningPause = 25;   // between two looks
constexpr std::int64_t looseness = 2;        // of a lag that is certain, besides unsteadiness,
constexpr std::int64_t firstLooseness = 15;  // and of one that was just found
constexpr int certain = 3;                   // looks that agree

constexpr float quietest = 1e-8F;      // mean square
constexpr float audible = 1e-6F;       // mean square of all bands
constexpr float fadingFactor = 0.85F;  // of the energy, from frame to frame
constexpr double likely = 0.5;
constexpr double clearlyBetter = 0.02;
constexpr double newLook = 0.2;        // its part in the mean of the looks
constexpr std::size_t lowBands = 5;    // up to 630 Hz: where a blow is strong
constexpr float blowMargin = 6.0F;     // of the energy, by which a blow exceeds an echo,
constexpr float onsetMargin = 100.0F;  // and where the answer itself begins a sound
constexpr float onsetRise = 3.0F;      // of the energy: there it begins one
constexpr double averaging = 0.02;     // of a new look at the origin
constexpr double calming = 0.98;       // of the unsteadiness, from call to call
constexpr double torn = 30.0;          // frames: one of the streams has paused

float sum(const Bands::Levels& levels) {
    float result = 0.0F;
    for (std::size_t band = 0; band < Bands::count; ++band) {
        result += levels[band];
    }
    return result;
}

float loudness(float energy) {
    return 10.0F * std::log10(energy + quietest) + 80.0F;
}

// The courses of all bands over some frames, in dB, band after band.
struct Courses {
    explicit Courses(std::int64_t frames)
        : length(frames), levels(static_cast<std::size_t>(frames) * Bands::count) {}

    void take(std::int64_t frame, const Bands::Levels& energies) {
        for (std::size_t band = 0; band < Bands::count; ++band) {
            levels[band * static_cast<std::size_t>(length) + static_cast<std::size_t>(frame)] =
                loudness(energies[band]);
        }
    }
    std::span<const float> of(std::size_t band, std::int64_t first, std::int64_t count) const {
        return std::span{levels}.subspan(
            band * static_cast<std::size_t>(length) + static_cast<std::size_t>(first),
            static_cast<std::size_t>(count));
    }

    const std::int64_t length;
    std::vector<float> levels;
};

// How alike `mine` and the part of `theirs` from `first` on are, 1 at most.
double likeness(const Courses& mine, const Courses& theirs, std::int64_t first) {
    double xx = 0.0;
    double yy = 0.0;
    double xy = 0.0;
    for (std::size_t band = 0; band < Bands::count; ++band) {
        const auto a = mine.of(band, 0, mine.length);
        const auto b = theirs.of(band, first, mine.length);
        float sx = 0.0F;
        float sy = 0.0F;
        float sxx = 0.0F;
        float syy = 0.0F;
        float sxy = 0.0F;
        for (std::size_t i = 0; i < a.size(); ++i) {
            sx += a[i];
            sy += b[i];
            sxx += a[i] * a[i];
            syy += b[i] * b[i];
            sxy += a[i] * b[i];
        }
        const auto n = static_cast<float>(a.size());
        xx += sxx - sx * sx / n;
        yy += syy - sy * sy / n;
        xy += sxy - sx * sy / n;
    }
    // Silence is like nothing.
    return xx > 1.0 && yy > 1.0 ? xy / std::sqrt(xx * yy) : 0.0;
}

}  // namespace

Echo::Echo(double theBlockSeconds)
    : blockSeconds(theBlockSeconds), alike(latestLag - earliestLag + 1) {}

void Echo::play(const Played& given, double heardSeconds) {
    if (given.rate <= 0.0) {
        return;
    }
    if (given.end < playedSamples) {  // another loudspeaker
        reference.reset();
        playedSamples = 0;
        playedBlocks = 0;
        origin.reset();
    }
    if (!reference) {
        referenceRate = given.rate;
        reference.emplace(referenceRate, blockSeconds);
    }
    skipSilence(given.end - playedSamples -
                std::min<std::uint64_t>(given.samples.size(), given.end - playedSamples));
    for (const float sample : given.samples) {
        reference->hear(sample);
        ++playedSamples;
        endPlayedBlock();
    }
    align(heardSeconds);
}

void Echo::skipSilence(std::uint64_t samples) {
    constexpr std::uint64_t matters = 100000;  // the rings hold less
    if (samples > matters) {
        const auto blocks = static_cast<std::uint64_t>(static_cast<double>(samples - matters) /
                                                       (referenceRate * blockSeconds)) /
                            blocksPerFrame * blocksPerFrame;
        playedBlocks += blocks;
        playedFrames += static_cast<Index>(blocks / blocksPerFrame);
        const auto skipped =
            static_cast<std::uint64_t>(static_cast<double>(blocks) * blockSeconds * referenceRate);
        playedSamples += skipped;
        samples -= skipped;
    }
    const auto end = playedSamples + samples;
    // What is left of the last sound rings on in the filters for a moment.
    while (playedSamples < end) {
        playedSamples = std::min(
            end, static_cast<std::uint64_t>(std::ceil(static_cast<double>(playedBlocks + 1) *
                                                      blockSeconds * referenceRate)));
        endPlayedBlock();
    }
}

void Echo::endPlayedBlock() {
    if (static_cast<double>(playedSamples) <
        static_cast<double>(playedBlocks + 1) * blockSeconds * referenceRate) {
        return;
    }
    reference->endBlock();
    ++playedBlocks;
    for (std::size_t band = 0; band < Bands::count; ++band) {
        playedSum[band] += reference->newestBlock()[band] / static_cast<float>(blocksPerFrame);
    }
    if (playedBlocks % blocksPerFrame == 0) {
        endPlayedFrame();
    }
}

void Echo::endPlayedFrame() {
    const Levels& before = fading[playedFrames - 1];
    for (std::size_t band = 0; band < Bands::count; ++band) {
        fading[playedFrames][band] = std::max(playedSum[band], fadingFactor * before[band]);
    }
    played[playedFrames] = playedSum;
    if (sum(playedSum) > audible) {
        lastSounding = playedFrames;
    }
    playedSum = {};
    ++playedFrames;
}

void Echo::align(double heardSeconds) {
    const double now =
        heardSeconds / (blockSeconds * blocksPerFrame) - static_cast<double>(playedFrames);
    if (!origin || std::abs(now - *origin) > torn) {
        origin = now;
        unsteadiness = 0.0;
        lag.reset();
        looks = 0;
    }
    // A player that is late, or whose buffer ran dry, shifts what is heard at once, the average
    // slowly.
    unsteadiness = std::max(calming * unsteadiness, std::abs(now - *origin));
    *origin += averaging * (now - *origin);
}

void Echo::hear(const Levels& block) {
    for (std::size_t band = 0; band < Bands::count; ++band) {
        heardSum[band] += block[band] / static_cast<float>(blocksPerFrame);
    }
    if (++heardBlocks % blocksPerFrame != 0) {
        return;
    }
    heard[heardFrames] = heardSum;
    heardSum = {};
    ++heardFrames;
    if (heardFrames % learningPause == 0) {
        learn();
    }
}

float Echo::playedAt(const Ring& ring, Index frame, std::size_t band) const {
    return frame >= 0 && frame < playedFrames ? ring[frame][band] : 0.0F;
}

// Compares the courses of the last frames heard with those of what was played before, at every lag.
void Echo::learn() {
    const Index first = heardFrames - compared;
    if (!origin || first < 0) {
        return;
    }
    const auto base = static_cast<Index>(std::lround(*origin));
    const Index oldest = first - base - latestLag;
    if (lastSounding < oldest || soundingFrames(first - base) < fewestSounding) {
        return;
    }
    Courses mine{compared};
    Courses theirs{compared + latestLag - earliestLag};
    for (Index i = 0; i < mine.length; ++i) {
        mine.take(i, heard[first + i]);
    }
    for (Index i = 0; i < theirs.length; ++i) {
        const bool isThere = oldest + i >= 0 && oldest + i < playedFrames;
        theirs.take(i, isThere ? played[oldest + i] : Levels{});
    }
    Index best = earliestLag;
    for (Index each = earliestLag; each <= latestLag; ++each) {
        auto& mean = alike[static_cast<std::size_t>(each - earliestLag)];
        mean += (looks == 0 ? 1.0 : newLook) * (likeness(mine, theirs, latestLag - each) - mean);
        best = likenessAt(each) > likenessAt(best) ? each : best;
    }
    ++looks;
    if (likenessAt(best) < likely) {
        lag.reset();
        learnBound(base);
        return;
    }
    const bool isSame = lag && likenessAt(best) < likenessAt(*lag) + clearlyBetter;
    agreeing = isSame ? agreeing + 1 : 0;
    lag = isSame ? *lag : best;
    learnGain(base + *lag);
}

double Echo::likenessAt(Index atLag) const {
    return alike[static_cast<std::size_t>(atLag - earliestLag)];
}

Echo::Index Echo::soundingFrames(Index from) const {
    Index count = 0;
    for (Index frame = std::max<Index>(0, from); frame < playedFrames; ++frame) {
        count += sum(played[frame]) > audible ? 1 : 0;
    }
    return count;
}

// The middle of what the microphone heard more, or less, than was played.
void Echo::learnGain(Index shift) {
    Levels result{};
    float most = 0.0F;
    for (std::size_t band = 0; band < Bands::count; ++band) {
        std::vector<float> ratios;
        for (Index frame = heardFrames - compared; frame < heardFrames; ++frame) {
            if (playedAt(played, frame - shift, band) > audible / 10.0F) {
                ratios.push_back(heard[frame][band] / fading[frame - shift][band]);
            }
        }
        if (ratios.size() >= static_cast<std::size_t>(fewestSounding) / 2) {
            const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
            std::nth_element(ratios.begin(), middle, ratios.end());
            result[band] = *middle;
        } else if (gain) {
            result[band] = (*gain)[band];
        }
        most = std::max(most, result[band]);
    }
    for (std::size_t band = 0; band < Bands::count; ++band) {
        result[band] = result[band] > 0.0F ? result[band] : most;
    }
    gain = result;
}

// Where nothing is alike, as with headphones: what was heard in all is the most that an echo can
// have been of it. The least that was ever found counts: blows are heard as well.
void Echo::learnBound(Index base) {
    Levels result{};
    const Index first = heardFrames - compared;
    for (std::size_t band = 0; band < Bands::count; ++band) {
        float mine = 0.0F;
        float theirs = 0.0F;
        for (Index frame = first; frame < heardFrames; ++frame) {
            mine += heard[frame][band];
        }
        // Whatever the lag is, the echo of these has been heard meanwhile.
        for (Index there = first - base - earliestLag; there < heardFrames - base - latestLag;
             ++there) {
            theirs += playedAt(played, there, band);
        }
        result[band] = mine / std::max(theirs, audible);
        if (gain) {
            result[band] = std::min(result[band], (*gain)[band]);
        }
    }
    gain = result;
}

bool Echo::explains(std::size_t blocks) const {
    if (!origin) {
        return false;
    }
    const auto base = static_cast<Index>(std::lround(*origin));
    const Index last = heardFrames - 1;
    const Index first = last - static_cast<Index>(blocks / blocksPerFrame);
    const Index loose = (agreeing >= certain ? looseness : firstLooseness) +
                        static_cast<Index>(std::ceil(unsteadiness));
    const Index earliest = lag ? *lag - loose : earliestLag;
    const Index latest = lag ? *lag + loose : latestLag;
    if (lastSounding < first - base - latest - roomsTail) {
        return false;  // the answers have died away
    }
    if (!gain) {
        return true;
    }
    // Against the loudest that may arrive at this time, and what it was before.
    float mine = 0.0F;
    float theirs = 0.0F;
    float before = 0.0F;
    for (std::size_t band = 0; band < lowBands; ++band) {
        float loudest = 0.0F;
        for (Index frame = first; frame <= last; ++frame) {
            mine += heard[frame][band];
        }
        for (Index there = first - base - latest; there <= last - base - earliest; ++there) {
            loudest = std::max(loudest, playedAt(fading, there, band));
        }
        theirs += loudest * (*gain)[band];
        before += playedAt(fading, first - base - latest - 2, band) * (*gain)[band];
    }
    const bool begins = lag && theirs > onsetRise * before;
    const auto count = static_cast<float>(last - first + 1);
    return mine < theirs * count * (begins ? onsetMargin : blowMargin);
}

}  // namespace bonkora::detector
