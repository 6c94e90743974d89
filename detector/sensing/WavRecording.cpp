#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "detector/sensing/Recording.h"

namespace bonkora::detector {

namespace {

struct Sound {
    SDL_AudioSpec format{};
    std::unique_ptr<Uint8, decltype(&SDL_FreeWAV)> bytes{nullptr, SDL_FreeWAV};
    Uint32 size = 0;
};

// SDL checks everything in the file; asked to be strict, it refuses one that was cut short.
bool load(std::string_view bytes, Sound& sound) {
    SDL_SetHint(SDL_HINT_WAVE_TRUNCATION, "verystrict");
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        SDL_SetError("it is too large");
        return false;
    }
    SDL_RWops* const source = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
    Uint8* loaded = nullptr;
    if (source == nullptr ||
        SDL_LoadWAV_RW(source, 1, &sound.format, &loaded, &sound.size) == nullptr) {
        return false;
    }
    sound.bytes.reset(loaded);
    return true;
}

// One channel of floating-point numbers, at the rate the file has.
bool convert(const Sound& sound, std::vector<float>& samples) {
    const auto& format = sound.format;
    const std::unique_ptr<SDL_AudioStream, decltype(&SDL_FreeAudioStream)> stream{
        SDL_NewAudioStream(format.format, format.channels, format.freq, AUDIO_F32SYS, 1,
                           format.freq),
        SDL_FreeAudioStream};
    if (!stream ||
        SDL_AudioStreamPut(stream.get(), sound.bytes.get(), static_cast<int>(sound.size)) != 0 ||
        SDL_AudioStreamFlush(stream.get()) != 0) {
        return false;
    }
    const int available = SDL_AudioStreamAvailable(stream.get());
    samples.resize(static_cast<std::size_t>(available) / sizeof(float));
    return SDL_AudioStreamGet(stream.get(), samples.data(), available) == available;
}

}  // namespace

platform::Result<Recording> parseWav(std::string_view bytes) {
    Sound sound;
    std::vector<float> samples;
    if (!load(bytes, sound)) {
        return platform::Failed{std::string{"it is no whole WAV file: "} + SDL_GetError()};
    }
    if (sound.format.freq < 4000 || sound.format.freq > 192000) {
        return platform::Failed{"its sampling rate lies outside 4 to 192 kHz"};
    }
    if (!convert(sound, samples)) {
        return platform::Failed{std::string{"its sound cannot be read: "} + SDL_GetError()};
    }
    if (samples.empty()) {
        return platform::Failed{"it holds no sound"};
    }
    Recording recording{SensorKind::microphone, static_cast<double>(sound.format.freq), {}};
    recording.frames.reserve(samples.size());
    std::transform(samples.begin(), samples.end(), std::back_inserter(recording.frames),
                   [](float sample) {
                       return Frame{std::isfinite(sample) ? sample : 0.0F, 0.0F, 0.0F};
                   });
    return recording;
}

}  // namespace bonkora::detector
