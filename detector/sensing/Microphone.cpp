#include "detector/sensing/Microphone.h"

#include <SDL.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <mutex>
#include <utility>

#include "detector/SdlSystem.h"
#include "platform/UniqueDescriptor.h"

namespace bonkora::detector {

namespace {

constexpr int sampleRate = 48000;  // samples a second
constexpr Uint16 chunkSize = 320;  // samples: 6.7 ms; shorter ones cost more processor

// The audio thread's hand: it keeps what it hears until the sensor is read.
class Ear {
  public:
    explicit Ear(platform::UniqueDescriptor theEvent) : event(std::move(theEvent)) {}

    int descriptor() const { return event.get(); }

    static void hear(void* self, Uint8* bytes, int size) {
        auto* const samples = reinterpret_cast<const float*>(bytes);
        static_cast<Ear*>(self)->keep(samples, static_cast<std::size_t>(size) / sizeof(float));
    }

    void take(std::vector<float>& samples) {
        eventfd_t count = 0;
        static_cast<void>(::eventfd_read(event.get(), &count));
        samples.clear();
        const std::lock_guard lock{mutex};
        std::swap(samples, heard);
    }

  private:
    void keep(const float* samples, std::size_t count) {
        {
            const std::lock_guard lock{mutex};
            // A listener that has been stopped for a second does not want it all.
            if (heard.size() > sampleRate) {
                heard.clear();
            }
            heard.insert(heard.end(), samples, samples + count);
        }
        static_cast<void>(::eventfd_write(event.get(), 1));
    }

    const platform::UniqueDescriptor event;
    std::mutex mutex;
    std::vector<float> heard;
};

class Microphone final : public Sensor {
  public:
    Microphone(std::unique_ptr<SdlSystem> theSystem, std::unique_ptr<Ear> theEar,
               SDL_AudioDeviceID theDevice, std::string name)
        : about{SensorKind::microphone, std::move(name), sampleRate},
          system(std::move(theSystem)),
          ear(std::move(theEar)),
          device(theDevice) {
        SDL_PauseAudioDevice(device, 0);
    }
    Microphone(const Microphone&) = delete;
    Microphone& operator=(const Microphone&) = delete;
    ~Microphone() override { SDL_CloseAudioDevice(device); }

    const SensorDescription& description() const override { return about; }
    int descriptor() const override { return ear->descriptor(); }

    SensorState read(std::vector<Frame>& frames) override {
        ear->take(samples);
        for (const float sample : samples) {
            frames.push_back({sample, 0.0F, 0.0F});
        }
        // A device that has gone goes on giving silence, and says so only here.
        if (SDL_GetAudioDeviceStatus(device) == SDL_AUDIO_STOPPED) {
            return {SensorState::Kind::lost, "the microphone has gone"};
        }
        return {};
    }

  private:
    const SensorDescription about;
    const std::unique_ptr<SdlSystem> system;
    const std::unique_ptr<Ear> ear;
    const SDL_AudioDeviceID device;
    std::vector<float> samples;
};

// The microphone that the system prefers, or nothing where it has no name. Opened by its name it is
// lost when it goes, instead of being replaced by whatever else the system can record, such as what
// the loudspeakers play.
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
    // The count also has SDL forget what is gone: a microphone that returns gets its old name.
    if (SDL_GetNumAudioDevices(1) == 0) {
        return platform::Failed{"none is there"};
    }
    platform::UniqueDescriptor event{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    if (!event) {
        return platform::Failed{"the system has no descriptor to give"};
    }
    auto ear = std::make_unique<Ear>(std::move(event));
    SDL_AudioSpec wanted{};
    wanted.freq = sampleRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 1;
    wanted.samples = chunkSize;
    wanted.callback = &Ear::hear;
    wanted.userdata = ear.get();
    const auto name = device.empty() ? preferredMicrophone() : device;
    SDL_AudioSpec obtained{};
    const auto opened =
        SDL_OpenAudioDevice(name.empty() ? nullptr : name.c_str(), 1, &wanted, &obtained, 0);
    if (opened == 0) {
        return platform::Failed{"no microphone can be opened"};
    }
    return std::make_unique<Microphone>(std::move(system), std::move(ear), opened,
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
