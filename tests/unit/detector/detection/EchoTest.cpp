#include "detector/detection/Echo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

#include "detector/detection/KnockDetector.h"

namespace bonkora::detector {

namespace {

constexpr double microphoneRate = 16000.0;
constexpr double playedRate = 22050.0;  // of what is played

constexpr double none = -1.0;

using Sound = std::vector<float>;

// Two seconds of drums: kicks, toms and snares, as custom sounds may hold them.
Sound drumLoop(std::mt19937& random) {
    Sound loop(static_cast<std::size_t>(2.0 * playedRate));
    std::normal_distribution<double> noise;
    std::uniform_real_distribution<double> even{0.0, 1.0};
    for (double at = 0.0; at < 1.8; at += 0.125 * std::floor(1.0 + 3.0 * even(random))) {
        const double hertz = 70.0 + 160.0 * even(random);
        const double rattle = even(random) < 0.4 ? 0.5 : 0.05;
        const double level = 0.25 + 0.5 * even(random);
        for (auto i = static_cast<std::size_t>(at * playedRate); i < loop.size(); ++i) {
            const double t = static_cast<double>(i) / playedRate - at;
            loop[i] += static_cast<float>(
                level * (std::sin(2.0 * std::numbers::pi * hertz * t) * std::exp(-t / 0.07) +
                         rattle * noise(random) * std::exp(-t / 0.04)));
        }
    }
    return loop;
}

// A loudspeaker that plays one loop after the other with pauses between, the way from there to the
// microphone, and a detector that knows what is played.
class Room {
  public:
    Room(unsigned seed, double theLatency, double theLoudness)
        : random(seed), latency(theLatency), loudness(theLoudness) {}

    // Plays for so many answers. `blowAt`: s after each one's beginning.
    void answers(int count, double blowAt = none, bool isTold = true) {
        for (int i = 0; i < count; ++i) {
            Sound signal = drumLoop(random);
            signal.resize(static_cast<std::size_t>(3.0 * playedRate));
            if (blowAt >= 0.0) {
                blows.push_back(seconds() + blowAt);
            }
            hand(signal, isTold);
        }
    }

    // How many of the blows were found, within a window's time, and what else was counted.
    int found() const {
        return static_cast<int>(std::count_if(blows.begin(), blows.end(), [&](double blow) {
            return std::any_of(knocks.begin(), knocks.end(), [&](const Knock& knock) {
                return std::abs(static_cast<double>(knock.frame) / microphoneRate - blow) < 0.02;
            });
        }));
    }
    int counted() const { return static_cast<int>(knocks.size()); }

    void play(double newLatency, double newLoudness) {
        latency = newLatency;
        loudness = newLoudness;
    }

  private:
    double seconds() const { return static_cast<double>(frames) / microphoneRate; }

    void hand(const Sound& signal, bool isTold) {
        constexpr std::size_t piece = 512;
        for (std::size_t begin = 0; begin < signal.size(); begin += piece) {
            const auto end = std::min(begin + piece, signal.size());
            Played played{playedRate, playedCount + (end - begin), {}};
            played.samples.assign(signal.begin() + static_cast<std::ptrdiff_t>(begin),
                                  signal.begin() + static_cast<std::ptrdiff_t>(end));
            playedCount = played.end;
            history.insert(history.end(), played.samples.begin(), played.samples.end());
            std::vector<Frame> heard;
            while (static_cast<double>(frames + 1) / microphoneRate <
                   static_cast<double>(playedCount) / playedRate) {
                heard.push_back(
                    {microphone(static_cast<double>(frames) / microphoneRate), 0.0F, 0.0F});
                ++frames;
            }
            if (isTold) {
                detector.play(played, heard.size());
            }
            detector.process(heard, knocks);
        }
    }

    // The loudspeaker has no bass; the room answers with a few reflections.
    float microphone(double time) {
        double sound = noise(random);
        double strength = loudness;
        for (const double way : {0.0, 0.0031, 0.0079, 0.017, 0.031, 0.055}) {
            sound += strength * playedAt(time - latency - way);
            strength *= -0.6;
        }
        const double t = blows.empty() ? -1.0 : time - blows.back();
        if (t >= 0.0 && t < 0.3) {
            sound += 0.5 * std::sin(2.0 * std::numbers::pi * 130.0 * t) * std::exp(-t / 0.025) +
                     0.2 * std::sin(2.0 * std::numbers::pi * 310.0 * t) * std::exp(-t / 0.015);
        }
        return static_cast<float>(std::clamp(bass(static_cast<float>(sound)), -1.0F, 1.0F));
    }
    double playedAt(double time) const {
        const auto place = static_cast<std::ptrdiff_t>(std::floor(time * playedRate));
        return place >= 0 && place < static_cast<std::ptrdiff_t>(history.size())
                   ? static_cast<double>(history[static_cast<std::size_t>(place)])
                   : 0.0;
    }

    std::mt19937 random;
    std::normal_distribution<double> noise{0.0, 0.001};
    double latency;
    double loudness;
    Filter bass = Filter::highPass(90.0, microphoneRate);
    KnockDetector detector{SensorKind::microphone, microphoneRate, {}};
    std::vector<Knock> knocks;
    std::vector<double> blows;
    Sound history;
    std::uint64_t playedCount = 0;
    std::uint64_t frames = 0;
};

struct Way {
    double latency;   // s
    double loudness;  // of full scale, where the drums are played with 0.25 to 0.75 of it
};

constexpr std::array ways{Way{0.03, 0.3}, Way{0.09, 1.0}, Way{0.48, 0.3}};

TEST(EchoTest, anAnswerNeverCounts) {
    for (const auto& [latency, loudness] : ways) {
        Room room{7, latency, loudness};
        room.answers(16);
        EXPECT_EQ(room.counted(), 0) << latency << " s";
        Room unaware{7, latency, loudness};
        unaware.answers(4, none, false);
        EXPECT_GT(unaware.counted(), 3) << latency << " s: they would count otherwise";
    }
}

TEST(EchoTest, aBlowDuringAnAnswerCounts) {
    for (const double latency : {0.03, 0.25}) {
        Room room{8, latency, 0.1};
        room.answers(2);
        room.answers(5, 0.79);
        room.answers(5, 1.31);
        EXPECT_GE(room.found(), 8) << latency << " s";
        EXPECT_EQ(room.counted(), room.found()) << latency << " s";
    }
}

TEST(EchoTest, withHeadphonesEveryBlowCounts) {
    Room room{9, 0.05, 0.0};
    room.answers(2);
    room.answers(5, 0.79);
    room.answers(5, 1.31);
    EXPECT_EQ(room.found(), 10);
    EXPECT_EQ(room.counted(), 10);
}

TEST(EchoTest, aLoudspeakerThatIsTurnedUpAndPlaysLaterIsLearnedAgain) {
    Room room{10, 0.04, 0.2};
    room.answers(8);
    room.play(0.3, 1.0);
    room.answers(1);  // in which it learns
    const int before = room.counted();
    room.answers(12);
    EXPECT_EQ(room.counted(), before);
    EXPECT_LE(before, 1);
}

}  // namespace

}  // namespace bonkora::detector
