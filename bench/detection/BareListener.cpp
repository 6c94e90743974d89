// The baseline for the cost of listening: has a microphone and a loudspeaker open as the detector
// has, in pieces of the same length, and does nothing with what it hears.
#include <SDL.h>
#include <SDL_mixer.h>
#include <unistd.h>

#include <cstdio>

int main(int, char**) {
    SDL_AudioSpec wanted{};
    wanted.freq = 48000;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 1;
    wanted.samples = 320;
    wanted.callback = [](void*, Uint8*, int) {};
    SDL_AudioSpec obtained{};
    if (SDL_Init(SDL_INIT_AUDIO) != 0 || Mix_OpenAudioDevice(44100, AUDIO_S16SYS, 2, 512, nullptr,
                                                             SDL_AUDIO_ALLOW_SAMPLES_CHANGE) != 0) {
        std::fprintf(stderr, "bare_listener: %s\n", SDL_GetError());
        return 1;
    }
    const auto microphone = SDL_OpenAudioDevice(nullptr, 1, &wanted, &obtained, 0);
    if (microphone == 0) {
        std::fprintf(stderr, "bare_listener: %s\n", SDL_GetError());
        return 1;
    }
    SDL_PauseAudioDevice(microphone, 0);
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        ::pause();
    }
}
