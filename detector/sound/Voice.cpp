#include "detector/sound/Voice.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <random>
#include <span>
#include <utility>

#include "detector/SdlSystem.h"
#include "detector/sound/SoundShelf.h"

namespace bonkora::detector {

namespace {

constexpr double range = 26.0;  // dB between the softest answer and the loudest
constexpr double lowestMinimum = 0.001;

constexpr int sampleRate = 44100;  // samples a second
constexpr int chunkSize = 512;     // samples; the device asks for them every 11.6 ms
constexpr int channels = 16;       // sounds at the same time

// Keeps what the mixer's thread gives the loudspeaker until take().
class PlayedBuffer {
  public:
    static void receive(void* self, Uint8* bytes, int size) {
        const auto* const samples = reinterpret_cast<const Sint16*>(bytes);
        static_cast<PlayedBuffer*>(self)->keep({samples, static_cast<std::size_t>(size) / 2U});
    }

    Played take() {
        const std::lock_guard lock{mutex};
        Played result{static_cast<double>(sampleRate), played.end, {}};
        std::swap(result.samples, played.samples);
        return result;
    }

  private:
    // Both channels, in turn.
    void keep(std::span<const Sint16> samples) {
        const auto isSilent =
            std::all_of(samples.begin(), samples.end(), [](Sint16 sample) { return sample == 0; });
        const std::lock_guard lock{mutex};
        // More than a second is left untaken only while the program is stopped: begin anew.
        if (played.samples.size() > sampleRate) {
            played.samples.clear();
        }
        if (!isSilent || !played.samples.empty()) {
            for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
                played.samples.push_back(static_cast<float>(samples[i] + samples[i + 1]) /
                                         65536.0F);
            }
        }
        played.end += samples.size() / 2;
    }

    std::mutex mutex;
    Played played;
};

// SDL's mixer, open for as long as one of these lives.
class Mixer {
    struct Key {};

  public:
    Mixer(Key, std::unique_ptr<SdlSystem> theSystem) : system(std::move(theSystem)) {
        Mix_SetPostMix(&PlayedBuffer::receive, &played);
    }
    Mixer(const Mixer&) = delete;
    Mixer& operator=(const Mixer&) = delete;
    ~Mixer() {
        // Closing does not forget it, and the next device would call it with what is gone by then.
        Mix_SetPostMix(nullptr, nullptr);
        Mix_CloseAudio();
    }

    Played takePlayed() { return played.take(); }

    static std::unique_ptr<Mixer> open() {
        auto sdl = SdlSystem::start();
        if (!sdl || Mix_OpenAudioDevice(sampleRate, AUDIO_S16SYS, 2, chunkSize, nullptr,
                                        SDL_AUDIO_ALLOW_SAMPLES_CHANGE) != 0) {
            return nullptr;
        }
        Mix_AllocateChannels(channels);
        return std::make_unique<Mixer>(Key{}, std::move(sdl));
    }

  private:
    const std::unique_ptr<SdlSystem> system;
    PlayedBuffer played;
};

// The voice of one sound device.
class MixedVoice {
  public:
    MixedVoice(std::unique_ptr<Mixer> theMixer, const Voice::Settings& theSettings)
        : mixer(std::move(theMixer)), settings(theSettings) {
        const auto seed = std::random_device{}();
        const bool isCustom = settings.set == SoundSet::custom;
        const auto set = isCustom ? SoundSet::pain : settings.set;
        builtIn = SoundShelf::loaded(folderOf(set), SoundChoice::of(set, seed));
        if (builtIn->isEmpty()) {
            complaint = "there are no sounds in " + folderOf(set);
        }
        if (isCustom) {
            custom = SoundShelf::readingAhead(settings.customFolder,
                                              SoundChoice::of(SoundSet::custom, seed));
        }
    }
    MixedVoice(const MixedVoice&) = delete;
    MixedVoice& operator=(const MixedVoice&) = delete;
    ~MixedVoice() { Mix_HaltChannel(-1); }

    void answer(double amplitude, SensorKind kind, double time) {
        dropCustomIfEmpty();
        Sound sound = custom ? custom->take(time) : nullptr;
        if (!sound) {
            sound = builtIn->take(time);
        }
        if (!sound) {
            return;
        }
        if (Mix_GroupAvailable(-1) < 0) {
            Mix_HaltChannel(Mix_GroupOldest(-1));
        }
        const int channel = Mix_GroupAvailable(-1);
        if (channel < 0) {
            return;
        }
        const double loudness =
            settings.scalesWithForce ? loudnessFor(amplitude, settings.minAmplitude, kind) : 1.0;
        Mix_Volume(channel, static_cast<int>(std::lround(loudness * MIX_MAX_VOLUME)));
        Mix_PlayChannel(channel, sound.get(), 0);
        sounding.at(static_cast<std::size_t>(channel)) = std::move(sound);
    }

    static bool isSounding() { return Mix_Playing(-1) > 0; }

    Played takePlayed() { return mixer->takePlayed(); }

    std::optional<std::string> takeComplaint() {
        dropCustomIfEmpty();
        return std::exchange(complaint, std::nullopt);
    }

  private:
    std::string folderOf(SoundSet set) const {
        const char* const name = set == SoundSet::sexy   ? "/sexy"
                                 : set == SoundSet::halo ? "/halo"
                                                         : "/pain";
        return settings.soundsFolder + name;
    }

    void dropCustomIfEmpty() {
        if (custom && custom->isEmpty()) {
            custom.reset();
            complaint = "no MP3, OGG, FLAC or WAV file that can be used in " +
                        settings.customFolder + "; the built-in sounds stand in";
        }
    }

    const std::unique_ptr<Mixer> mixer;
    const Voice::Settings settings;
    std::unique_ptr<SoundShelf> builtIn;
    std::unique_ptr<SoundShelf> custom;
    // Keeps in memory what each channel plays, until the channel's next sound.
    std::array<Sound, channels> sounding;
    std::optional<std::string> complaint;
};

// Outlasts its sound device: a knock that finds none looks for another.
class LastingVoice final : public Voice {
  public:
    LastingVoice(Settings theSettings, std::unique_ptr<MixedVoice> theVoice)
        : settings(std::move(theSettings)), voice(std::move(theVoice)) {}

    void answer(double amplitude, SensorKind kind, double time) override {
        constexpr double pause = 5.0;  // s; looking for a device takes a while
        if (!voice && time >= nextLook) {
            nextLook = time + pause;
            if (auto mixer = Mixer::open()) {
                voice = std::make_unique<MixedVoice>(std::move(mixer), settings);
            }
        }
        if (voice) {
            voice->answer(amplitude, kind, time);
        }
    }
    bool isSounding() const override { return voice && MixedVoice::isSounding(); }
    Played takePlayed() override { return voice ? voice->takePlayed() : Played{}; }
    std::optional<std::string> takeComplaint() override {
        return voice ? voice->takeComplaint() : std::nullopt;
    }
    void letGo() override {
        voice.reset();
        nextLook = 0.0;
    }

  private:
    const Settings settings;
    std::unique_ptr<MixedVoice> voice;
    double nextLook = 0.0;  // s of the signal
};

}  // namespace

double fullForce(SensorKind kind) {
    return kind == SensorKind::microphone ? 1.0 : 4.0;
}

double loudnessFor(double amplitude, double minAmplitude, SensorKind kind) {
    const double softest = std::max(minAmplitude, lowestMinimum);
    const double loudest = fullForce(kind);
    if (softest >= loudest) {
        return 1.0;
    }
    const double part =
        std::log(std::max(amplitude, softest) / softest) / std::log(loudest / softest);
    return std::pow(10.0, range / 20.0 * (std::min(part, 1.0) - 1.0));
}

platform::Result<std::unique_ptr<Voice>> Voice::open(const Settings& settings) {
    auto mixer = Mixer::open();
    if (!mixer) {
        return platform::Failed{"there is no sound device; counting goes on without sound"};
    }
    return std::make_unique<LastingVoice>(settings,
                                          std::make_unique<MixedVoice>(std::move(mixer), settings));
}

std::unique_ptr<Voice> Voice::waiting(const Settings& settings) {
    return std::make_unique<LastingVoice>(settings, nullptr);
}

}  // namespace bonkora::detector
