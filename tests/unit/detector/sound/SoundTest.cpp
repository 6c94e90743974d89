#include <SDL.h>
#include <SDL_mixer.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>
#include <semaphore>
#include <string>
#include <thread>
#include <utility>

#include "detector/sound/SoundChoice.h"
#include "detector/sound/SoundFiles.h"
#include "detector/sound/Voice.h"
#include "detector/synthesis/Sets.h"
#include "tests/support/TemporaryFolder.h"

namespace bonkora::detector {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(LoudnessTest, theSoftestKnockIs26DecibelsBelowFullVolume) {
    EXPECT_NEAR(loudnessFor(0.05, 0.05, SensorKind::microphone), std::pow(10.0, -1.3), 1e-9);
    EXPECT_NEAR(loudnessFor(0.01, 0.05, SensorKind::microphone), std::pow(10.0, -1.3), 1e-9);
}

TEST(LoudnessTest, fullForceAndMoreIsFullVolume) {
    EXPECT_EQ(loudnessFor(1.0, 0.05, SensorKind::microphone), 1.0);
    EXPECT_EQ(loudnessFor(9.0, 0.05, SensorKind::accelerometer), 1.0);
    EXPECT_LT(loudnessFor(1.0, 0.05, SensorKind::accelerometer), 0.7);
}

TEST(LoudnessTest, eachDoublingOfTheForceAddsTheSameDecibels) {
    const auto at = [](double force) { return loudnessFor(force, 0.05, SensorKind::microphone); };
    EXPECT_NEAR(at(0.2) / at(0.1), at(0.8) / at(0.4), 1e-9);
    EXPECT_GT(at(0.2), at(0.1));
}

TEST(LoudnessTest, oddMinimaGiveVolumesAllTheSame) {
    EXPECT_EQ(loudnessFor(50.0, 10.0, SensorKind::microphone), 1.0);
    EXPECT_GE(loudnessFor(0.5, 0.0, SensorKind::microphone), 0.05);
}

TEST(SoundChoiceTest, chanceNeverRepeatsTheLastAndLeavesNothingOut) {
    const auto choice = SoundChoice::of(SoundSet::pain, 5);
    std::map<std::size_t, int> chosen;
    std::size_t last = 99;
    for (int i = 0; i < 1000; ++i) {
        const auto next = choice->next(5, i);
        EXPECT_NE(next, last);
        last = next;
        ++chosen[next];
    }
    EXPECT_EQ(chosen.size(), 5U);
    for (const auto& [sound, count] : chosen) {
        EXPECT_GT(count, 120) << sound;
    }
}

TEST(SoundChoiceTest, aSingleSoundIsChosenAgain) {
    const auto choice = SoundChoice::of(SoundSet::custom, 5);
    EXPECT_EQ(choice->next(1, 0.0), 0U);
    EXPECT_EQ(choice->next(1, 1.0), 0U);
}

TEST(SoundChoiceTest, quickKnocksExciteAndAPauseCalms) {
    const auto choice = SoundChoice::of(SoundSet::sexy, 0);
    EXPECT_EQ(choice->next(8, 0.0), 0U);
    std::size_t last = 0;
    for (int i = 1; i < 20; ++i) {
        const auto next = choice->next(8, 0.4 * i);
        EXPECT_GE(next, last);
        last = next;
    }
    EXPECT_EQ(last, 7U);
    EXPECT_EQ(choice->next(8, 100.0), 0U);
    EXPECT_LE(choice->next(8, 104.0), 1U);
}

TEST(SoundChoiceTest, aTimeThatFallsExcitesNobody) {
    const auto choice = SoundChoice::of(SoundSet::sexy, 0);
    EXPECT_EQ(choice->next(8, 100000.0), 0U);
    EXPECT_EQ(choice->next(8, 0.0), 1U);
    EXPECT_EQ(choice->next(8, 100.0), 0U);
}

TEST(SoundChoiceTest, theChantIsSungInOrder) {
    const auto choice = SoundChoice::of(SoundSet::halo, 0);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(choice->next(6, 0.0), i % 6);
    }
}

const std::atomic<bool> never{false};
const std::atomic<bool> atOnce{true};

TEST(SoundFilesTest, lookingIntoAFolderStopsWhenItIsToldTo) {
    const test::TemporaryFolder folder;
    folder.write("1.wav", "x");
    EXPECT_THAT(soundFilesIn(folder.path(), atOnce), IsEmpty());
}

TEST(SoundFilesTest, onlySoundFilesCountInTheOrderOfTheirNumbers) {
    const test::TemporaryFolder folder;
    for (const char* const name : {"10.wav", "9.WAV", "a.mp3", "b.Ogg", "c.flac", "d.txt", "e"}) {
        folder.write(name, "x");
    }
    folder.makeFolder("f.mp3");
    EXPECT_THAT(soundFilesIn(folder.path(), never),
                testing::UnorderedElementsAre(folder / "10.wav", folder / "9.WAV", folder / "a.mp3",
                                              folder / "b.Ogg", folder / "c.flac"));
    EXPECT_THAT(soundFilesIn("/nowhere/at/all", never), IsEmpty());
    EXPECT_THAT(soundFilesIn(folder / "d.txt", never), IsEmpty());
}

// The voice through SDL's dummy device, which needs no hardware.
class VoiceTest : public testing::Test {
  protected:
    void SetUp() override {
        ::setenv("SDL_AUDIODRIVER", "dummy", 1);
        settings.soundsFolder = folder.makeFolder("sounds");
        folder.makeFolder("sounds/pain");
        synthesis::writeWav(folder / "sounds/pain/1.wav", synthesis::pain().front());
    }
    void TearDown() override { ::unsetenv("SDL_AUDIODRIVER"); }

    std::unique_ptr<Voice> open() {
        auto opened = Voice::open(settings);
        EXPECT_TRUE(opened) << opened.error();
        return *std::move(opened);
    }

    // The folder is looked into by another thread.
    static std::string complaintOf(Voice& voice) {
        for (;;) {
            if (const auto complaint = voice.takeComplaint()) {
                return *complaint;
            }
            std::this_thread::yield();
        }
    }

    const test::TemporaryFolder folder;
    Voice::Settings settings;
};

TEST_F(VoiceTest, soundsWhenItAnswers) {
    const auto voice = open();
    EXPECT_FALSE(voice->isSounding());
    voice->answer(0.5, SensorKind::microphone, 1.0);
    EXPECT_TRUE(voice->isSounding());
    EXPECT_EQ(voice->takeComplaint(), std::nullopt);
}

TEST_F(VoiceTest, aHundredKnocksAtOnceAreNoTrouble) {
    const auto voice = open();
    for (int i = 0; i < 100; ++i) {
        voice->answer(0.5, SensorKind::microphone, 1.0);
    }
    EXPECT_TRUE(voice->isSounding());
}

TEST_F(VoiceTest, anEmptyOrMissingCustomFolderIsSaidAndTheDefaultSetAnswers) {
    settings.set = SoundSet::custom;
    for (const auto& custom : {folder.makeFolder("empty"), folder / "missing", std::string{}}) {
        settings.customFolder = custom;
        const auto voice = open();
        EXPECT_THAT(complaintOf(*voice), HasSubstr("in " + custom));
        EXPECT_EQ(voice->takeComplaint(), std::nullopt);
        voice->answer(0.5, SensorKind::microphone, 1.0);
        EXPECT_TRUE(voice->isSounding());
    }
}

TEST_F(VoiceTest, withoutAnySoundItKeepsQuietAndSaysSo) {
    settings.soundsFolder = folder / "nothing";
    const auto voice = open();
    EXPECT_THAT(voice->takeComplaint().value_or(""), HasSubstr("no sounds in"));
    voice->answer(0.5, SensorKind::microphone, 1.0);
    EXPECT_FALSE(voice->isSounding());
}

TEST_F(VoiceTest, withoutASoundDeviceThereIsNoVoice) {
    ::setenv("SDL_AUDIODRIVER", "no such driver", 1);
    const auto opened = Voice::open(settings);
    ASSERT_FALSE(opened);
    EXPECT_THAT(opened.error(), HasSubstr("no sound device"));
}

TEST_F(VoiceTest, aSoundDeviceThatComesLaterIsFoundByAKnockButNotByEachOne) {
    ::setenv("SDL_AUDIODRIVER", "no such driver", 1);
    const auto voice = Voice::waiting(settings);
    voice->answer(0.5, SensorKind::microphone, 1.0);
    EXPECT_FALSE(voice->isSounding());
    ::setenv("SDL_AUDIODRIVER", "dummy", 1);
    voice->answer(0.5, SensorKind::microphone, 2.0);
    EXPECT_FALSE(voice->isSounding());
    voice->answer(0.5, SensorKind::microphone, 6.5);
    EXPECT_TRUE(voice->isSounding());
}

TEST_F(VoiceTest, letsGoOfEveryPartOfSdlAndTheNextKnockSoundsAgain) {
    const auto voice = open();
    voice->answer(0.5, SensorKind::microphone, 1.0);
    voice->letGo();
    EXPECT_FALSE(voice->isSounding());
    EXPECT_EQ(SDL_WasInit(SDL_INIT_AUDIO), 0U);
    voice->answer(0.5, SensorKind::microphone, 2.0);
    EXPECT_TRUE(voice->isSounding());
}

// The address sanitizer is what sees it: what was let go is no longer there to be called.
TEST_F(VoiceTest, whatWasLetGoIsNotCalledByTheNextDevice) {
    open()->letGo();
    ASSERT_EQ(SDL_Init(SDL_INIT_AUDIO), 0);
    ASSERT_EQ(Mix_OpenAudioDevice(44100, AUDIO_S16SYS, 2, 512, nullptr, 0), 0);
    std::counting_semaphore<> called{0};
    const auto effect = [](int, void*, int, void* semaphore) {
        static_cast<std::counting_semaphore<>*>(semaphore)->release();
    };
    // Effects come before what a voice listens with: the second call follows the first one's whole
    // round.
    for (int round = 0; round < 2; ++round) {
        ASSERT_NE(Mix_RegisterEffect(MIX_CHANNEL_POST, effect, nullptr, &called), 0);
        EXPECT_TRUE(called.try_acquire_for(std::chrono::seconds{10}));
        Mix_UnregisterAllEffects(MIX_CHANNEL_POST);
        while (called.try_acquire()) {
        }
    }
    Mix_CloseAudio();
    SDL_Quit();
}

TEST_F(VoiceTest, aSoundIsCutAfterAMinuteHoweverLongItsFileIs) {
    const auto voice = open();  // the mixer with it
    synthesis::writeWav(folder / "long.wav", synthesis::Waveform(90 * synthesis::sampleRate));
    const auto sound = readSound(folder / "long.wav", never);
    ASSERT_NE(sound, nullptr);
    EXPECT_NEAR(sound->alen / (44100.0 * 4.0), longestSound, 0.1);
    EXPECT_EQ(readSound(folder / "long.wav", atOnce), nullptr);
}

TEST_F(VoiceTest, aFileThatHoldsNoSoundIsNone) {
    const auto voice = open();
    folder.write("broken.mp3", "this is no music");
    folder.write("empty.wav", "");
    for (const char* const name : {"broken.mp3", "empty.wav", "missing.ogg"}) {
        EXPECT_EQ(readSound(folder / name, never), nullptr) << name;
    }
}

}  // namespace

}  // namespace bonkora::detector
