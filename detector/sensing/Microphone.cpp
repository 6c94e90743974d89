#include "detector/sensing/Microphone.h"

#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <utility>

#include "detector/SdlSystem.h"
#include "platform/WakePipe.h"

namespace bonkora::detector {

namespace {

constexpr int sampleRate = 48000;  // samples a second
constexpr Uint16 chunkSize = 320;  // samples: 6.7 ms; shorter ones cost more processor

// What is softer can hold no knock: the reader is woken for it only when some has gathered.
constexpr float stirring = 0.004F;                 // of full scale
constexpr int piecesAfter = 4;                     // of what stirred, for the judgement
constexpr std::size_t gathered = sampleRate / 20;  // samples

// Buffers samples from SDL's audio thread until read().
class SampleBuffer {
  public:
    explicit SampleBuffer(std::unique_ptr<platform::WakePipe> theWake) : wake(std::move(theWake)) {}

    int descriptor() const { return wake->descriptor(); }

    static void receive(void* self, Uint8* bytes, int size) {
        auto* const samples = reinterpret_cast<const float*>(bytes);
        static_cast<SampleBuffer*>(self)->keep(samples,
                                               static_cast<std::size_t>(size) / sizeof(float));
    }

    void take(std::vector<float>& samples) {
        wake->clear();
        samples.clear();
        const std::lock_guard lock{mutex};
        std::swap(samples, heard);
    }

  private:
    void keep(const float* samples, std::size_t count) {
        const bool stirs = std::any_of(samples, samples + count,
                                       [](float sample) { return std::abs(sample) > stirring; });
        awake = stirs ? piecesAfter + 1 : std::max(0, awake - 1);
        bool isDue = awake > 0;
        {
            const std::lock_guard lock{mutex};
            // More than a second is left unread only while the program is stopped: begin anew.
            if (heard.size() > sampleRate) {
                heard.clear();
            }
            heard.insert(heard.end(), samples, samples + count);
            isDue = isDue || heard.size() >= gathered;
        }
        if (isDue) {
            wake->set();
        }
    }

    const std::unique_ptr<platform::WakePipe> wake;
    std::mutex mutex;
    std::vector<float> heard;
    int awake = 0;  // pieces for which to wake the reader at once
};

class Microphone final : public Sensor {
  public:
    Microphone(std::unique_ptr<SdlSystem> theSystem, std::unique_ptr<SampleBuffer> theBuffer,
               SDL_AudioDeviceID theDevice, std::string name)
        : about{SensorKind::microphone, std::move(name), sampleRate},
          system(std::move(theSystem)),
          buffer(std::move(theBuffer)),
          device(theDevice) {
        SDL_PauseAudioDevice(device, 0);
    }
    Microphone(const Microphone&) = delete;
    Microphone& operator=(const Microphone&) = delete;
    ~Microphone() override { SDL_CloseAudioDevice(device); }

    const SensorDescription& description() const override { return about; }
    int descriptor() const override { return buffer->descriptor(); }

    SensorState read(std::vector<Frame>& frames) override {
        buffer->take(samples);
        for (const float sample : samples) {
            // One "not a number" would stay in the filters for good.
            frames.push_back({std::isfinite(sample) ? sample : 0.0F, 0.0F, 0.0F});
        }
        // SDL goes on giving silence when a device has gone; only its status tells.
        if (SDL_GetAudioDeviceStatus(device) == SDL_AUDIO_STOPPED) {
            return {SensorState::Kind::lost, "the microphone has gone"};
        }
        return {};
    }

  private:
    const SensorDescription about;
    const std::unique_ptr<SdlSystem> system;
    const std::unique_ptr<SampleBuffer> buffer;
    const SDL_AudioDeviceID device;
    std::vector<float> samples;
};

// The name of the system's preferred microphone, or nothing where it has none. A microphone opened
// by name is lost when it is unplugged; one opened as "the default" would silently become another
// source, such as the loudspeakers' own output.
std::string preferredMicrophone() {
    char* name = nullptr;
    SDL_AudioSpec itsFormat{};
    if (SDL_GetDefaultAudioInfo(&name, &itsFormat, 1) != 0 || name == nullptr) {
        return {};
    }
    const std::unique_ptr<char, decltype(&SDL_free)> owner{name, SDL_free};
    return name;
}

}  // namespace

OpenedSensor openMicrophone(const std::string& device) {
    auto system = SdlSystem::start();
    if (!system) {
        return platform::Failed{"no sound system answers"};
    }
    // Counting also makes SDL forget devices that have gone, so that a microphone that returns gets
    // its old name back instead of "name (2)".
    if (SDL_GetNumAudioDevices(1) == 0) {
        return platform::Failed{"none is there"};
    }
    auto wake = platform::WakePipe::make();
    if (!wake) {
        return platform::Failed{"the system has no descriptor to give"};
    }
    auto buffer = std::make_unique<SampleBuffer>(std::move(wake));
    SDL_AudioSpec wanted{};
    wanted.freq = sampleRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 1;
    wanted.samples = chunkSize;
    wanted.callback = &SampleBuffer::receive;
    wanted.userdata = buffer.get();
    const auto name = device.empty() ? preferredMicrophone() : device;
    SDL_AudioSpec obtained{};
    const auto opened =
        SDL_OpenAudioDevice(name.empty() ? nullptr : name.c_str(), 1, &wanted, &obtained, 0);
    if (opened == 0) {
        return platform::Failed{"no microphone can be opened"};
    }
    return std::make_unique<Microphone>(std::move(system), std::move(buffer), opened,
                                        name.empty() ? "default" : name);
}

std::vector<std::string> findMicrophones() {
    std::vector<std::string> names;
    const auto system = SdlSystem::start();
    for (int i = 0; system && i < SDL_GetNumAudioDevices(1); ++i) {
        if (const char* const name = SDL_GetAudioDeviceName(i, 1)) {
            names.emplace_back(name);
        }
    }
    return names;
}

}  // namespace bonkora::detector
