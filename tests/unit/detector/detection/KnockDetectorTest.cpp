#include "detector/detection/KnockDetector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <random>

namespace bonkora::detector {

namespace {

using namespace std::chrono_literals;

// A signal to put knocks into: soft noise around the sensor's rest.
class Signal {
  public:
    Signal(SensorKind theKind, double theRate, double seconds, float noise = 0.001F)
        : kind(theKind), rate(theRate), frames(static_cast<std::size_t>(theRate * seconds)) {
        std::mt19937 random{7};
        std::normal_distribution<float> normal{0.0F, noise};
        for (Frame& frame : frames) {
            frame = kind == SensorKind::microphone
                        ? Frame{normal(random), 0.0F, 0.0F}
                        : Frame{normal(random), normal(random), 1.0F + normal(random)};
        }
    }

    // The case's answer to an impact: a fading oscillation that begins at once.
    Signal& knock(double at, double amplitude) {
        const double hertz = kind == SensorKind::microphone ? 180.0 : 60.0;
        for (std::size_t i = static_cast<std::size_t>(at * rate); i < frames.size(); ++i) {
            const double t = static_cast<double>(i) / rate - at;
            const double thump = std::cos(2.0 * std::numbers::pi * hertz * t) * std::exp(-t / 0.03);
            frames[i][kind == SensorKind::microphone ? 0 : 2] +=
                static_cast<float>(amplitude * thump);
        }
        return *this;
    }

    std::vector<Knock> heard(const Sensitivity& sensitivity, std::size_t chunk = 256) const {
        KnockDetector detector{kind, rate, sensitivity};
        std::vector<Knock> knocks;
        for (std::size_t i = 0; i < frames.size(); i += chunk) {
            detector.process(std::span{frames}.subspan(i, std::min(chunk, frames.size() - i)),
                             knocks);
        }
        return knocks;
    }

    const SensorKind kind;
    const double rate;
    std::vector<Frame> frames;
};

struct Source {
    SensorKind kind;
    double rate;
};

class EverySource : public testing::TestWithParam<Source> {
  protected:
    Signal signal(double seconds) const { return {GetParam().kind, GetParam().rate, seconds}; }
};

TEST_P(EverySource, hearsAKnockOnceAndWithin20Milliseconds) {
    const auto knocks = signal(2.0).knock(1.0, 0.4).heard({});
    ASSERT_EQ(knocks.size(), 1U);
    const double rate = GetParam().rate;
    EXPECT_NEAR(static_cast<double>(knocks[0].frame) / rate, 1.0, 0.010);
    EXPECT_LT(static_cast<double>(knocks[0].decided) / rate - 1.0, 0.020);
}

TEST_P(EverySource, hearsNothingInSilenceAndSoftNoise) {
    EXPECT_TRUE(signal(5.0).heard({}).empty());
    Signal silence = signal(5.0);
    silence.frames.assign(silence.frames.size(), Frame{0.0F, 0.0F, 1.0F});
    EXPECT_TRUE(silence.heard({0.0, 0ms, true}).empty());
}

TEST_P(EverySource, aHarderKnockHasAHigherAmplitude) {
    double last = 0.0;
    for (const double force : {0.1, 0.2, 0.4, 0.8, 1.6}) {
        const auto knocks = signal(2.0).knock(1.0, force).heard({});
        ASSERT_EQ(knocks.size(), 1U) << force;
        EXPECT_GT(knocks[0].amplitude, last);
        last = knocks[0].amplitude;
    }
}

TEST_P(EverySource, ignoresWhatIsWeakerThanTheMinimum) {
    EXPECT_TRUE(signal(2.0).knock(1.0, 0.1).heard({0.2, 750ms, false}).empty());
    EXPECT_EQ(signal(2.0).knock(1.0, 0.6).heard({0.2, 750ms, false}).size(), 1U);
}

TEST_P(EverySource, aSecondKnockWithinTheCooldownIsIgnored) {
    const auto two = signal(3.0).knock(1.0, 0.4).knock(1.5, 0.4);
    EXPECT_EQ(two.heard({0.05, 750ms, false}).size(), 1U);
    EXPECT_EQ(two.heard({0.05, 400ms, false}).size(), 2U);
}

TEST_P(EverySource, fastHalvesTheCooldownAndLowersTheMinimum) {
    const auto two = signal(3.0).knock(1.0, 0.4).knock(1.5, 0.4);
    EXPECT_EQ(two.heard({0.05, 750ms, true}).size(), 2U);
    double minimum = 0.05;
    while (!two.heard({minimum, 750ms, false}).empty()) {
        minimum *= 1.05;
    }
    EXPECT_EQ(two.heard({minimum, 750ms, true}).size(), 2U);
    EXPECT_EQ(two.heard({minimum / 0.7, 750ms, true}).size(), 0U);
}

TEST_P(EverySource, howTheSignalIsCutDoesNotMatter) {
    Signal knocks = signal(4.0);
    for (double at = 0.5; at < 4.0; at += 0.37) {
        knocks.knock(at, 0.3);
    }
    const auto whole = knocks.heard({0.05, 100ms, false}, knocks.frames.size());
    EXPECT_GE(whole.size(), 9U);
    for (const std::size_t chunk : {std::size_t{1}, std::size_t{7}, std::size_t{1000}}) {
        const auto cut = knocks.heard({0.05, 100ms, false}, chunk);
        ASSERT_EQ(cut.size(), whole.size());
        for (std::size_t i = 0; i < cut.size(); ++i) {
            EXPECT_EQ(cut[i].frame, whole[i].frame);
            EXPECT_EQ(cut[i].amplitude, whole[i].amplitude);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(KnockDetectorTest, EverySource,
                         testing::Values(Source{SensorKind::microphone, 48000.0},
                                         Source{SensorKind::microphone, 44100.0},
                                         Source{SensorKind::microphone, 8000.0},
                                         Source{SensorKind::accelerometer, 200.0},
                                         Source{SensorKind::accelerometer, 400.0},
                                         Source{SensorKind::accelerometer, 1600.0}));

// An even pair of knocks: the very frame at which the cooldown is over counts, the one before does
// not.
TEST(KnockDetectorTest, honoursTheCooldownToTheFrame) {
    Signal signal{SensorKind::accelerometer, 1000.0, 3.0, 0.0F};
    signal.knock(1.0, 0.5).knock(1.5, 0.5);
    const auto free = signal.heard({0.05, 0ms, false});
    ASSERT_EQ(free.size(), 2U);
    const auto apart = std::chrono::milliseconds{free[1].frame - free[0].frame};
    EXPECT_EQ(signal.heard({0.05, apart, false}).size(), 2U);
    EXPECT_EQ(signal.heard({0.05, apart + 1ms, false}).size(), 1U);
}

// What the judgement is made from, of each candidate at its impact's frame.
std::map<std::uint64_t, Bands::Features> evidenceOf(const Signal& signal, double minAmplitude) {
    std::map<std::uint64_t, Bands::Features> evidence;
    KnockDetector detector{
        signal.kind, signal.rate, {minAmplitude, 750ms, false}, [&](const Candidate& candidate) {
            evidence[candidate.knock.frame] = candidate.features;
            return false;
        }};
    std::vector<Knock> knocks;
    detector.process(signal.frames, knocks);
    EXPECT_TRUE(knocks.empty());
    return evidence;
}

TEST(KnockDetectorTest, theMinimumAmplitudeLeavesTheEvidenceAsItIs) {
    const Signal signal = Signal{SensorKind::microphone, 48000.0, 2.0}.knock(1.0, 0.4);
    const auto strict = evidenceOf(signal, 0.1);
    const auto lax = evidenceOf(signal, 0.01);
    ASSERT_FALSE(strict.empty());
    for (const auto& [frame, features] : strict) {
        ASSERT_TRUE(lax.contains(frame));
        EXPECT_EQ(lax.at(frame), features);
    }
}

TEST(KnockDetectorTest, aMicrophonesGainLeavesTheEvidenceAsItIs) {
    Signal signal = Signal{SensorKind::microphone, 48000.0, 2.0}.knock(1.0, 0.2);
    const auto soft = evidenceOf(signal, 0.02);
    for (Frame& frame : signal.frames) {
        frame[0] *= 4.0F;
    }
    const auto loud = evidenceOf(signal, 0.08);
    ASSERT_FALSE(soft.empty());
    ASSERT_EQ(soft.size(), loud.size());
    for (const auto& [frame, features] : soft) {
        ASSERT_TRUE(loud.contains(frame));
        EXPECT_THAT(loud.at(frame), testing::Pointwise(testing::FloatNear(0.05F), features));
    }
}

TEST(KnockDetectorTest, hearsAKnockInAHumThatIsAsLoud) {
    Signal signal{SensorKind::microphone, 48000.0, 3.0};
    for (std::size_t i = 0; i < signal.frames.size(); ++i) {
        const double t = static_cast<double>(i) / 48000.0;
        signal.frames[i][0] +=
            static_cast<float>(0.1 * std::sin(2.0 * std::numbers::pi * 100.0 * t));
    }
    EXPECT_EQ(signal.knock(2.0, 0.3).heard({}).size(), 1U);
}

TEST(KnockDetectorTest, aRisingToneIsNoKnock) {
    Signal signal{SensorKind::microphone, 48000.0, 3.0};
    for (std::size_t i = 48000; i < signal.frames.size(); ++i) {
        const double t = static_cast<double>(i) / 48000.0 - 1.0;
        signal.frames[i][0] += static_cast<float>(0.5 * std::min(1.0, t / 0.1) *
                                                  std::sin(2.0 * std::numbers::pi * 220.0 * t));
    }
    EXPECT_TRUE(signal.heard({}).empty());
}

TEST(KnockDetectorTest, aSlowAccelerometersAmplitudeHardlyDependsOnWhenItReads) {
    constexpr double rate = 200.0;
    double least = 1e9;
    double most = 0.0;
    for (double late = 0.0; late < 1.0; late += 0.1) {
        Signal signal{SensorKind::accelerometer, rate, 2.0};
        for (std::size_t i = 201; i < signal.frames.size(); ++i) {
            const double t = (static_cast<double>(i) - 200.0 - late) / rate;
            signal.frames[i][2] += static_cast<float>(
                0.4 * std::sin(2.0 * std::numbers::pi * 75.0 * t) * std::exp(-t / 0.018));
        }
        const auto knocks = signal.heard({});
        ASSERT_EQ(knocks.size(), 1U) << late;
        least = std::min(least, knocks[0].amplitude);
        most = std::max(most, knocks[0].amplitude);
    }
    EXPECT_LT(most, 1.3 * least);
}

TEST(KnockDetectorTest, liftingAndTurningTheComputerIsNoKnock) {
    Signal signal{SensorKind::accelerometer, 400.0, 5.0};
    for (std::size_t i = 400; i < signal.frames.size(); ++i) {
        const double t = static_cast<double>(i) / 400.0 - 1.0;
        signal.frames[i][2] += static_cast<float>(0.3 * std::sin(2.0 * std::numbers::pi * 1.5 * t));
        signal.frames[i][0] += static_cast<float>(0.5 * (1.0 - std::cos(t)));
    }
    EXPECT_TRUE(signal.heard({}).empty());
}

TEST(KnockDetectorTest, broadNoiseThatGrowsLoudIsNoKnock) {
    Signal signal{SensorKind::microphone, 48000.0, 6.0};
    std::mt19937 random{3};
    std::normal_distribution<float> normal{0.0F, 1.0F};
    for (std::size_t i = 0; i < signal.frames.size(); ++i) {
        const float t = static_cast<float>(i) / 48000.0F;
        signal.frames[i][0] += 0.3F * std::clamp((t - 1.0F) / 2.0F, 0.0F, 1.0F) * normal(random);
    }
    EXPECT_TRUE(signal.heard({}).empty());
}

}  // namespace

}  // namespace bonkora::detector
