#include "detector/sensing/Recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace bonkora::detector {

namespace {

using testing::HasSubstr;

void append(std::string& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xffU);
    }
}

std::string wav(std::uint32_t rate, std::uint32_t channels, const std::vector<int>& samples) {
    const auto size = static_cast<std::uint32_t>(samples.size() * 2);
    std::string bytes = "RIFF";
    append(bytes, 36 + size, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);
    append(bytes, 1, 2);
    append(bytes, channels, 2);
    append(bytes, rate, 4);
    append(bytes, rate * channels * 2, 4);
    append(bytes, channels * 2, 2);
    append(bytes, 16, 2);
    bytes += "data";
    append(bytes, size, 4);
    for (const int sample : samples) {
        append(bytes, static_cast<std::uint32_t>(sample), 2);
    }
    return bytes;
}

std::string reasonOf(const platform::Result<Recording>& result) {
    return result ? "accepted" : result.error();
}

TEST(RecordingTest, aWavGivesItsSamplesAsFractionsOfFullScale) {
    const auto result = parseWav(wav(8000, 1, {0, 16384, -32768}));
    ASSERT_EQ(reasonOf(result), "accepted");
    const auto& recording = *result;
    EXPECT_EQ(recording.kind, SensorKind::microphone);
    EXPECT_EQ(recording.rate, 8000.0);
    ASSERT_EQ(recording.frames.size(), 3U);
    EXPECT_NEAR(recording.frames[1][0], 0.5F, 1e-4F);
    EXPECT_NEAR(recording.frames[2][0], -1.0F, 1e-4F);
}

TEST(RecordingTest, theChannelsOfAWavAreAveraged) {
    const auto result = parseWav(wav(48000, 2, {16384, 0, 0, -16384}));
    ASSERT_EQ(reasonOf(result), "accepted");
    const auto& frames = result->frames;
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_NEAR(frames[0][0], 0.25F, 1e-4F);
    EXPECT_NEAR(frames[1][0], -0.25F, 1e-4F);
}

TEST(RecordingTest, aWavThatWasCutShortIsRefusedWhereverTheCutIs) {
    const auto whole = wav(8000, 1, std::vector<int>(100, 1000));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_THAT(reasonOf(parseWav(whole.substr(0, length))), HasSubstr("no whole WAV"))
            << length;
    }
}

TEST(RecordingTest, otherFilesAreNoWav) {
    EXPECT_THAT(
        reasonOf(parseWav("hello, this is a letter and nothing that sounds at all, really")),
        HasSubstr("no whole WAV"));
}

TEST(RecordingTest, aWavWithoutSoundOrAtAnOddRateIsRefused) {
    EXPECT_NE(reasonOf(parseWav(wav(8000, 1, {}))), "accepted");
    EXPECT_THAT(reasonOf(parseWav(wav(100, 1, {1, 2}))), HasSubstr("sampling rate"));
    EXPECT_THAT(reasonOf(parseWav(wav(4000000, 1, {1, 2}))), HasSubstr("sampling rate"));
}

TEST(RecordingTest, aCsvGivesItsReadingsAtTheirMedianStep) {
    const auto result = parseCsv(
        "time,x,y,z\n# lying on a table\n0,0,0,1\n0.0025, 0.5 ,-1,1\r\n"
        "0.005,0,0,1\n");
    ASSERT_EQ(reasonOf(result), "accepted");
    const auto& recording = *result;
    EXPECT_EQ(recording.kind, SensorKind::accelerometer);
    EXPECT_NEAR(recording.rate, 400.0, 1e-6);
    ASSERT_EQ(recording.frames.size(), 3U);
    EXPECT_EQ(recording.frames[1], (Frame{0.5F, -1.0F, 1.0F}));
}

TEST(RecordingTest, aGapInACsvIsBridgedSoThatTimeStaysTrue) {
    const auto result = parseCsv("0,0,0,0\n0.01,1,0,0\n0.02,2,0,0\n0.05,5,0,0\n0.06,6,0,0\n");
    ASSERT_EQ(reasonOf(result), "accepted");
    const auto& frames = result->frames;
    ASSERT_EQ(frames.size(), 7U);
    EXPECT_NEAR(frames[4][0], 4.0F, 1e-5F);
}

TEST(RecordingTest, aBadCsvIsRefusedWithItsLine) {
    EXPECT_EQ(reasonOf(parseCsv("0,0,0,1\n0.01,0,x,1\n")), "line 2 is not: time, x, y, z");
    EXPECT_EQ(reasonOf(parseCsv("0,0,0,1\n0.01,0,1\n")), "line 2 is not: time, x, y, z");
    EXPECT_EQ(reasonOf(parseCsv("0,0,0,1\n0.01,0,nan,1\n")), "line 2 is not: time, x, y, z");
    EXPECT_EQ(reasonOf(parseCsv("0,0,0,1\n0.01,0,0,1\n0.01,0,0,1\n")),
              "line 3: the time does not rise");
    EXPECT_EQ(reasonOf(parseCsv("time,x,y,z\n")), "it holds fewer than two readings");
    EXPECT_EQ(reasonOf(parseCsv("")), "it holds fewer than two readings");
    EXPECT_EQ(reasonOf(parseCsv("\xff\xfe")), "it is neither WAV nor CSV");
    EXPECT_THAT(reasonOf(parseCsv("0,0,0,1\n1,0,0,1\n")), HasSubstr("readings a second"));
    EXPECT_THAT(reasonOf(parseCsv("0,0,0,1\n0.001,0,0,1\n0.002,0,0,0\n9e9,0,0,1\n")),
                HasSubstr("time is missing"));
}

TEST(RecordingTest, aFileThatIsNotThereIsSaidSo) {
    EXPECT_THAT(reasonOf(readRecording("/nowhere/at/all.wav")), HasSubstr("no such file"));
    EXPECT_THAT(reasonOf(readRecording("/tmp")), HasSubstr("cannot be read"));
}

class HandTicker final : public Ticker {
  public:
    int descriptor() const override { return -1; }
    std::uint64_t take() override { return ticks; }
    std::uint64_t ticks = 0;
};

TEST(RecordingTest, aRecordingIsReadOutInItsOwnTime) {
    auto hand = std::make_unique<HandTicker>();
    HandTicker& ticker = *hand;
    Recording recording{SensorKind::microphone, 1000.0, std::vector<Frame>(12)};
    RecordingSensor sensor{std::move(recording), "x", std::move(hand)};
    std::vector<Frame> frames;
    ticker.ticks = 0;
    EXPECT_EQ(sensor.read(frames).kind, SensorState::Kind::listening);
    EXPECT_EQ(frames.size(), 0U);
    ticker.ticks = 1;  // 5 ms
    EXPECT_EQ(sensor.read(frames).kind, SensorState::Kind::listening);
    EXPECT_EQ(frames.size(), 5U);
    ticker.ticks = 100;
    EXPECT_EQ(sensor.read(frames).kind, SensorState::Kind::ended);
    EXPECT_EQ(frames.size(), 12U);
}

}  // namespace

}  // namespace bonkora::detector
