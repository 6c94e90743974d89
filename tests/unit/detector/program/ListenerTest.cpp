#include "detector/program/Listener.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>

#include <csignal>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "platform/Descriptor.h"

namespace bonkora::detector {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// A sensor whose reads are written down beforehand; it always has something to say.
class ScriptedSensor final : public Sensor {
  public:
    struct Step {
        std::vector<Frame> frames;
        SensorState state;
    };
    explicit ScriptedSensor(std::deque<Step> theSteps) : steps(std::move(theSteps)) {}

    const SensorDescription& description() const override { return about; }
    int descriptor() const override { return event.get(); }
    SensorState read(std::vector<Frame>& frames) override {
        if (steps.empty()) {
            return {SensorState::Kind::ended, {}};
        }
        const Step step = std::move(steps.front());
        steps.pop_front();
        frames.insert(frames.end(), step.frames.begin(), step.frames.end());
        return step.state;
    }

  private:
    const SensorDescription about{SensorKind::accelerometer, "script", 1000.0};
    const platform::UniqueDescriptor event{::eventfd(1, EFD_CLOEXEC)};
    std::deque<Step> steps;
};

class RecordedVoice final : public Voice {
  public:
    void answer(double amplitude, SensorKind, double time) override {
        answers.emplace_back(amplitude, time);
    }
    bool isSounding() const override {
        whenAsked();
        return sounding;
    }
    Played takePlayed() override { return {}; }
    void letGo() override { ++timesLetGo; }
    std::optional<std::string> takeComplaint() override {
        return std::exchange(complaint, std::nullopt);
    }
    std::function<void()> whenAsked = [] {};
    bool sounding = false;
    int timesLetGo = 0;
    std::vector<std::pair<double, double>> answers;
    std::optional<std::string> complaint;
};

std::vector<Frame> secondWithKnock() {
    std::vector<Frame> frames(1000, Frame{0.0F, 0.0F, 1.0F});
    frames[500][2] = 3.0F;
    frames[501][2] = -1.0F;
    return frames;
}

class ListenerTest : public testing::Test {
  protected:
    void SetUp() override {
        std::signal(SIGPIPE, SIG_IGN);  // as the program does
        auto made = platform::Pipe::make();
        ASSERT_TRUE(made);
        output = std::move(*made);
        settings.outputDescriptor = output.fileHandleForWriting.get();
        settings.once = true;
    }

    std::string printed() {
        std::string text(65536, '\0');
        ::fcntl(output.fileHandleForReading.get(), F_SETFL, O_NONBLOCK);
        const auto count = ::read(output.fileHandleForReading.get(), text.data(), text.size());
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }

    int listen(Listener::OpenSensor open) {
        EventWriter writer{output.fileHandleForWriting.get(), true};
        return Listener{settings, writer, std::move(open), &voice}.run();
    }

    static Listener::OpenSensor once(std::deque<ScriptedSensor::Step> steps) {
        return [steps]() { return std::make_unique<ScriptedSensor>(steps); };
    }

    platform::Pipe output;
    Listener::Settings settings;
    RecordedVoice voice;
};

TEST_F(ListenerTest, reportsReadyThenEachKnockAndAnswersIt) {
    EXPECT_EQ(listen(once({{secondWithKnock(), {}}, {secondWithKnock(), {}}})), 0);
    const auto text = printed();
    EXPECT_THAT(text, StartsWith("{\"type\":\"ready\",\"sensor\":\"accelerometer\",\"device\":"
                                 "\"script\"}\n{\"type\":\"slap\",\"amplitude\":"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    ASSERT_EQ(voice.answers.size(), 2U);
    EXPECT_NEAR(voice.answers[0].second, 0.5, 0.01);
    EXPECT_NEAR(voice.answers[1].second, 1.5, 0.01);
}

TEST_F(ListenerTest, withoutASensorSaysWhyAndOnceEndsWithStatus1) {
    EXPECT_EQ(listen([] { return platform::Failed{"looked everywhere"}; }), 1);
    EXPECT_EQ(printed(), "{\"type\":\"error\",\"message\":\"no sensor: looked everywhere\"}\n");
}

TEST_F(ListenerTest, aSensorThatVanishesIsAnErrorAndOnceEndsWithStatus1) {
    EXPECT_EQ(listen(once({{secondWithKnock(), {SensorState::Kind::lost, "it has gone"}}})), 1);
    const auto text = printed();
    EXPECT_THAT(text, HasSubstr("slap"));
    EXPECT_THAT(text, testing::EndsWith("{\"type\":\"error\",\"message\":\"it has gone\"}\n"));
}

TEST_F(ListenerTest, complaintsFollowReadySoThatTheyAreSeen) {
    settings.complaints = {"configuration: line 1: oh"};
    voice.complaint = "no sounds";
    EXPECT_EQ(listen(once({})), 0);
    EXPECT_THAT(printed(), testing::ContainsRegex("ready.*\n.*line 1: oh.*\n.*no sounds"));
}

TEST_F(ListenerTest, endsAtOnceWhenASignalIsThere) {
    const platform::UniqueDescriptor signal{::eventfd(1, EFD_CLOEXEC)};
    settings.signalDescriptor = signal.get();
    EXPECT_EQ(listen([]() -> OpenedSensor {
                  ADD_FAILURE() << "it opened a sensor first";
                  return platform::Failed{"none"};
              }),
              0);
}

TEST_F(ListenerTest, theSignalsTimeGoesOnWhenTheSensorIsOpenedAnew) {
    settings.once = false;
    settings.pause = std::chrono::milliseconds{0};
    int opened = 0;
    const auto open = [&]() -> OpenedSensor {
        const auto end = ++opened == 3 ? SensorState::Kind::ended : SensorState::Kind::lost;
        return std::make_unique<ScriptedSensor>(
            std::deque<ScriptedSensor::Step>{{secondWithKnock(), {end, "it has gone"}}});
    };
    EXPECT_EQ(listen(open), 0);
    ASSERT_EQ(voice.answers.size(), 3U);
    EXPECT_NEAR(voice.answers[1].second, 1.5, 0.01);
    EXPECT_NEAR(voice.answers[2].second, 2.5, 0.01);
}

TEST_F(ListenerTest, theVoiceLetsGoOfItsDeviceWhileThereIsNoSensorOnceItHasSpoken) {
    settings.once = false;
    settings.pause = std::chrono::milliseconds{0};
    int opened = 0;
    const auto open = [&]() -> OpenedSensor {
        ++opened;
        voice.sounding = opened < 3;
        EXPECT_EQ(voice.timesLetGo, opened == 4 ? 1 : 0);
        if (opened < 4) {
            return platform::Failed{"none is there"};
        }
        return std::make_unique<ScriptedSensor>(std::deque<ScriptedSensor::Step>{});
    };
    EXPECT_EQ(listen(open), 0);
    EXPECT_EQ(opened, 4);
}

// Has nothing to say at first, however often it is waited for.
class SilentSensor final : public Sensor {
  public:
    SilentSensor(SensorKind kind, int theWaits) : about{kind, "silent", 1000.0}, waits(theWaits) {}

    const SensorDescription& description() const override { return about; }
    int descriptor() const override {
        if (waits-- == 0) {
            ::eventfd_write(event.get(), 1);
        }
        return event.get();
    }
    SensorState read(std::vector<Frame>& frames) override {
        frames.insert(frames.end(), 10, Frame{});
        return {++reads == 2 ? SensorState::Kind::ended : SensorState::Kind::listening, {}};
    }

  private:
    const SensorDescription about;
    const platform::UniqueDescriptor event{::eventfd(0, EFD_CLOEXEC)};
    mutable int waits;
    int reads = 0;
};

TEST_F(ListenerTest, aMicrophoneThatFallsSilentIsAnErrorUntilItsReadingsComeBack) {
    settings.once = false;
    settings.longestSilence = std::chrono::milliseconds{0};
    EXPECT_EQ(listen([] { return std::make_unique<SilentSensor>(SensorKind::microphone, 5); }), 0);
    EXPECT_EQ(printed(),
              "{\"type\":\"ready\",\"sensor\":\"microphone\",\"device\":\"silent\"}\n"
              "{\"type\":\"error\",\"message\":\"the microphone has stopped giving readings\"}\n"
              "{\"type\":\"ready\",\"sensor\":\"microphone\",\"device\":\"silent\"}\n");
}

TEST_F(ListenerTest, anAccelerometerThatFallsSilentIsOpenedAnew) {
    settings.once = false;
    settings.pause = settings.longestSilence = std::chrono::milliseconds{0};
    int waits = 3;
    const auto open = [&] {
        return std::make_unique<SilentSensor>(SensorKind::accelerometer, std::exchange(waits, 0));
    };
    EXPECT_EQ(listen(open), 0);
    EXPECT_THAT(printed(), testing::ContainsRegex("ready.*\n.*stopped giving readings.*\n.*ready"));
}

TEST_F(ListenerTest, withOnceAFallIntoSilenceEndsItWithStatus1) {
    settings.longestSilence = std::chrono::milliseconds{0};
    EXPECT_EQ(listen([] { return std::make_unique<SilentSensor>(SensorKind::microphone, 5); }), 1);
    EXPECT_THAT(printed(), HasSubstr("stopped giving readings"));
}

TEST_F(ListenerTest, endsWhenItsReaderHasGone) {
    output.fileHandleForReading.reset();
    settings.once = false;
    std::deque<ScriptedSensor::Step> endless(1000000);
    EXPECT_EQ(listen(once(endless)), 0);
}

TEST_F(ListenerTest, anOutputThatCannotBePolledIsLeftAlone) {
    platform::Pipe unpolled = *platform::Pipe::make();
    settings.outputDescriptor = unpolled.fileHandleForWriting.get();
    unpolled.fileHandleForWriting.reset();  // as /dev/null on macOS
    EXPECT_EQ(listen(once({{secondWithKnock(), {}}})), 0);
    EXPECT_THAT(printed(), HasSubstr("slap"));
}

TEST_F(ListenerTest, quitOnStandardInputEndsItAndItsEndDoesNot) {
    auto input = *platform::Pipe::make();
    settings.inputDescriptor = input.fileHandleForReading.get();
    settings.obeysInput = true;
    ASSERT_TRUE(platform::writeAll(input.fileHandleForWriting.get(), "hello\nquit\n"));
    std::deque<ScriptedSensor::Step> endless(1000000);
    EXPECT_EQ(listen(once(endless)), 0);
    input.fileHandleForWriting.reset();
    EXPECT_EQ(listen(once({{secondWithKnock(), {}}})), 0);
    EXPECT_EQ(voice.answers.size(), 1U);
}

TEST_F(ListenerTest, aFullPipeLosesNothingAndHoldsNothingUp) {
    EventWriter writer{output.fileHandleForWriting.get(), true};
    constexpr int lines = 5000;  // more than a pipe takes
    for (int i = 0; i < lines; ++i) {
        writer.knock(0.5);
    }
    EXPECT_TRUE(writer.hasPending());
    std::string all;
    while (writer.hasPending()) {
        all += printed();
        writer.flush();
    }
    all += printed();
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), lines);
    EXPECT_EQ(all.size(), lines * std::string{"{\"type\":\"slap\",\"amplitude\":0.5}\n"}.size());
}

TEST_F(ListenerTest, aReaderThatIsLateGetsEveryLineOfARecordingThatIsOver) {
    // More than the pipe holds three times over, read only from the recording's end on.
    settings.complaints.assign(2000, std::string(100, '.'));
    std::string all;
    voice.whenAsked = [&] { all += printed(); };
    EXPECT_EQ(listen(once({{secondWithKnock(), {}}})), 0);
    all += printed();
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 2002);
    EXPECT_THAT(all.substr(all.size() - 100), HasSubstr("\"slap\""));
}

TEST_F(ListenerTest, whateverAPathHoldsALineStaysOneJsonObject) {
    EventWriter writer{output.fileHandleForWriting.get(), true};
    writer.error("folder \"a\\b\"\n\xff");
    EXPECT_EQ(printed(),
              "{\"type\":\"error\",\"message\":\"folder \\\"a\\\\b\\\"\\n\xef\xbf\xbd\"}\n");
}

TEST_F(ListenerTest, forPeopleThereAreWordsThatNobodyCounts) {
    EventWriter writer{output.fileHandleForWriting.get(), false};
    writer.ready("microphone", "Hit Factory");
    writer.knock(0.25);
    EXPECT_EQ(printed(), "Listening with the microphone.\nKnock of 0.25\n");
}

}  // namespace

}  // namespace bonkora::detector
