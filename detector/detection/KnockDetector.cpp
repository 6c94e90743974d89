#include "detector/detection/KnockDetector.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace bonkora::detector {

namespace {

constexpr double blockDuration = 0.001;   // s
constexpr double settlingTime = 0.1;      // s; the surroundings are unknown before
constexpr double fastAmplitude = 0.7;     // of the minimum amplitude
constexpr double loudestSurprise = 10.0;  // times the surroundings' energy: more is an event
constexpr double usualPeak = 2.0;         // of an accelerometer, times its effective value
constexpr double echoPart = 0.7;          // of the fading hold that a new impact exceeds

std::uint64_t framesIn(std::chrono::milliseconds duration, double rate) {
    return static_cast<std::uint64_t>(
        std::ceil(static_cast<double>(duration.count()) * 1e-3 * rate));
}

double square(float value) {
    return static_cast<double>(value) * static_cast<double>(value);
}

}  // namespace

KnockDetector::KnockDetector(SensorKind theKind, double theRate, const Sensitivity& sensitivity)
    : KnockDetector(theKind, theRate, sensitivity,
                    [network = Network{}](const Candidate& candidate) {
                        return network(candidate.features) >
                               thresholdAt(candidate.loudness, Network::quiet, Network::loud);
                    }) {}

KnockDetector::KnockDetector(SensorKind theKind, double theRate, const Sensitivity& sensitivity,
                             Judge judge)
    : kind(theKind),
      rate(theRate),
      tuning(tuningFor(theKind, theRate)),
      minAmplitude(sensitivity.minAmplitude * (sensitivity.fast ? fastAmplitude : 1.0)),
      cooldownFrames(
          framesIn(sensitivity.fast ? sensitivity.cooldown / 2 : sensitivity.cooldown, theRate)),
      blockSize(std::max<std::size_t>(1, static_cast<std::size_t>(theRate * blockDuration))),
      windowBlocks(blocksIn(tuning.window)),
      decisionBlocks(tuning.forceTime > 0.0 ? blocksIn(tuning.forceTime) : windowBlocks),
      riseBlocks(blocksIn(tuning.riseTime)),
      lookBackBlocks(blocksIn(tuning.lookBack)),
      lowPass(Filter::lowPass(tuning.lowPass, theRate)),
      isKnock(std::move(judge)),
      settling(blocksIn(settlingTime)) {
    highPass.fill(Filter::highPass(tuning.highPass, rate));
    if (kind == SensorKind::microphone) {
        bands.emplace(rate, static_cast<double>(blockSize) / rate);
        echo.emplace(static_cast<double>(blockSize) / rate);
    }
    history.resize(decisionBlocks + riseBlocks + lookBackBlocks + 1);
}

std::size_t KnockDetector::blocksIn(double seconds) const {
    const double blocks = seconds * rate / static_cast<double>(blockSize);
    return std::max<std::size_t>(1, static_cast<std::size_t>(blocks + 1e-9));
}

void KnockDetector::process(std::span<const Frame> frames, std::vector<Knock>& knocks) {
    for (const Frame& frame : frames) {
        if (frameCount == 0) {
            origin = frame;
        }
        filter(frame);
        ++frameCount;
        if (++blockFrames == blockSize) {
            endBlock(knocks);
        }
    }
}

void KnockDetector::play(const Played& played, std::size_t waiting) {
    if (echo) {
        echo->play(played, static_cast<double>(frameCount + waiting) / rate);
    }
}

void KnockDetector::filter(const Frame& frame) {
    double energy = 0.0;
    if (kind == SensorKind::microphone) {
        const float sound = frame[0] - origin[0];
        energy = square(lowPass(highPass[0](sound)));
        bands->hear(sound);
    } else {
        for (std::size_t axis = 0; axis < frame.size(); ++axis) {
            energy += square(highPass[axis](frame[axis] - origin[axis]));
        }
    }
    block.energy += energy;
    const double strength = std::sqrt(energy);
    if (strength > block.peak || blockFrames == 0) {
        block.peak = strength;
        block.peakFrame = frameCount;
    }
}

void KnockDetector::endBlock(std::vector<Knock>& knocks) {
    if (bands) {
        bands->endBlock();
        echo->hear(bands->newestBlock());
    }
    block.begins = settling == 0 && beginsKnock(block);
    settling -= settling > 0 ? 1 : 0;
    remember(block);
    block = {};
    blockFrames = 0;
    if (past(decisionBlocks).begins) {
        judge(knocks);
    }
}

// `now` is not yet in the history.
bool KnockDetector::beginsKnock(const Block& now) const {
    const double threshold = std::max(
        {minAmplitude, tuning.ambientFactor * std::sqrt(ambientEnergy), echoPart * heldPeak});
    const double before = peakBetween(riseBlocks + lookBackBlocks - 1, riseBlocks - 1);
    return now.peak >= threshold && now.peak > 0.0 && now.peak >= tuning.riseFactor * before;
}

void KnockDetector::judge(std::vector<Knock>& knocks) {
    const double peak = peakBetween(decisionBlocks, decisionBlocks - windowBlocks);
    const Knock knock{past(decisionBlocks).peakFrame, frameCount - 1,
                      tuning.forceTime > 0.0 ? usualPeak * effectiveSince(decisionBlocks) : peak};
    if (knock.frame < knownUntil ||
        (bands && (!isKnock({knock, bands->features(), bands->loudness()}) ||
                   echo->explains(windowBlocks + riseBlocks)))) {
        return;
    }
    heldPeak = peak;
    knownUntil = frameCount;
    if (knock.frame >= quietUntil) {
        knocks.push_back(knock);
        quietUntil = knock.frame + cooldownFrames;
    }
}

void KnockDetector::remember(const Block& now) {
    newest = (newest + 1) % history.size();
    history[newest] = now;
    // The surroundings are what lay before the time in which an impact rises.
    const double old = past(riseBlocks + lookBackBlocks).energy / static_cast<double>(blockSize);
    const double limited =
        ambientEnergy > 0.0 ? std::min(old, loudestSurprise * ambientEnergy) : old;
    const double seconds = static_cast<double>(blockSize) / rate;
    ambientEnergy += (limited - ambientEnergy) * std::min(1.0, seconds / tuning.ambientTime);
    heldPeak *= std::exp(-seconds / tuning.holdTime);
}

const KnockDetector::Block& KnockDetector::past(std::size_t blocksAgo) const {
    return history[(newest + history.size() - blocksAgo) % history.size()];
}

double KnockDetector::effectiveSince(std::size_t blocksAgo) const {
    double energy = 0.0;
    for (std::size_t ago = 0; ago <= blocksAgo; ++ago) {
        energy += past(ago).energy;
    }
    return std::sqrt(energy / static_cast<double>((blocksAgo + 1) * blockSize));
}

double KnockDetector::peakBetween(std::size_t oldestAgo, std::size_t newestAgo) const {
    double peak = 0.0;
    for (std::size_t ago = newestAgo; ago <= oldestAgo; ++ago) {
        peak = std::max(peak, past(ago).peak);
    }
    return peak;
}

}  // namespace bonkora::detector
