#include "detector/detection/KnockDetector.h"

#include <algorithm>
#include <cmath>

namespace bonkora::detector {

namespace {

constexpr double blockDuration = 0.001;   // s
constexpr double settlingTime = 0.1;      // s; the surroundings are unknown before
constexpr double fastAmplitude = 0.7;     // of the minimum amplitude
constexpr double loudestSurprise = 10.0;  // times the surroundings' energy: more is an event
constexpr double echoPart = 0.7;          // of the fading hold that a new impact exceeds

std::uint64_t framesIn(std::chrono::milliseconds duration, double rate) {
    return static_cast<std::uint64_t>(
        std::ceil(static_cast<double>(duration.count()) * 1e-3 * rate));
}

}  // namespace

KnockDetector::KnockDetector(SensorKind theKind, double theRate, const Sensitivity& sensitivity)
    : kind(theKind),
      rate(theRate),
      tuning(tuningFor(theKind, theRate)),
      minAmplitude(sensitivity.minAmplitude * (sensitivity.fast ? fastAmplitude : 1.0)),
      cooldownFrames(
          framesIn(sensitivity.fast ? sensitivity.cooldown / 2 : sensitivity.cooldown, theRate)),
      blockSize(std::max<std::size_t>(1, static_cast<std::size_t>(theRate * blockDuration))),
      lowPass(Filter::lowPass(tuning.lowPass, theRate)),
      click(Filter::highPass(tuning.clickPass, theRate)) {
    highPass.fill(Filter::highPass(tuning.highPass, rate));
    history.resize(blocksIn(tuning.lookBack) + blocksIn(tuning.riseTime) + 1);
    settling = blocksIn(settlingTime);
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

void KnockDetector::filter(const Frame& frame) {
    float strength = 0.0F;
    if (kind == SensorKind::microphone) {
        const float sound = highPass[0](frame[0] - origin[0]);
        strength = std::abs(lowPass(sound));
        block.clickPeak = std::max(block.clickPeak, std::abs(click(sound)));
    } else {
        float square = 0.0F;
        for (std::size_t axis = 0; axis < frame.size(); ++axis) {
            const float motion = highPass[axis](frame[axis] - origin[axis]);
            square += motion * motion;
        }
        strength = std::sqrt(square);
    }
    block.energy += static_cast<double>(strength) * static_cast<double>(strength);
    if (strength > block.peak || block.peak == 0.0F) {
        block.peak = strength;
        block.peakFrame = frameCount;
    }
}

void KnockDetector::endBlock(std::vector<Knock>& knocks) {
    if (settling > 0) {
        --settling;
    } else if (isFollowing) {
        follow(block);
    } else if (beginsKnock(block)) {
        candidate = {block, block.peak, block.peak, 0.0F, block.clickPeak, 1};
        isFollowing = true;
    }
    if (isFollowing && candidate.blocks > blocksIn(tuning.window)) {
        isFollowing = false;
        heldPeak = candidate.peak;
        if (candidate.first.peakFrame >= quietUntil && isKnock(candidate)) {
            knocks.push_back({candidate.first.peakFrame, frameCount - 1, candidate.peak});
            quietUntil = candidate.first.peakFrame + cooldownFrames;
        }
    }
    remember(block);
    block = {};
    blockFrames = 0;
}

bool KnockDetector::beginsKnock(const Block& now) const {
    const double ambient = std::sqrt(ambientEnergy);
    const double threshold =
        std::max({minAmplitude, tuning.ambientFactor * ambient, echoPart * heldPeak});
    if (now.peak < threshold || now.peak == 0.0F) {
        return false;
    }
    float before = 0.0F;
    for (std::size_t ago = blocksIn(tuning.riseTime); ago < history.size(); ++ago) {
        before = std::max(before, past(ago).peak);
    }
    return now.peak >= static_cast<float>(tuning.riseFactor) * before;
}

void KnockDetector::follow(const Block& now) {
    candidate.peak = std::max(candidate.peak, now.peak);
    candidate.clickPeak = std::max(candidate.clickPeak, now.clickPeak);
    if (candidate.blocks <= blocksIn(tuning.riseTime)) {
        candidate.earlyPeak = std::max(candidate.earlyPeak, now.peak);
    }
    if (candidate.blocks > blocksIn(tuning.window) / 2) {
        candidate.latePeak = std::max(candidate.latePeak, now.peak);
    }
    ++candidate.blocks;
}

bool KnockDetector::isKnock(const Candidate& impact) const {
    const auto partOf = [&](float value) { return static_cast<double>(value / impact.peak); };
    return partOf(impact.earlyPeak) >= tuning.earlyPart &&
           partOf(impact.clickPeak) >= tuning.clickPart &&
           partOf(impact.latePeak) <= tuning.latePart;
}

void KnockDetector::remember(const Block& now) {
    newest = (newest + 1) % history.size();
    history[newest] = now;
    // The surroundings are what lay before the time in which an impact rises.
    const double old = past(history.size() - 1).energy / static_cast<double>(blockSize);
    const double limited =
        ambientEnergy > 0.0 ? std::min(old, loudestSurprise * ambientEnergy) : old;
    const double seconds = static_cast<double>(blockSize) / rate;
    ambientEnergy += (limited - ambientEnergy) * std::min(1.0, seconds / tuning.ambientTime);
    heldPeak *= std::exp(-seconds / tuning.holdTime);
}

const KnockDetector::Block& KnockDetector::past(std::size_t blocksAgo) const {
    return history[(newest + history.size() - blocksAgo) % history.size()];
}

}  // namespace bonkora::detector
