#include "detector/SdlSystem.h"

#include <SDL.h>

namespace bonkora::detector {

SdlSystem::~SdlSystem() {
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

std::unique_ptr<SdlSystem> SdlSystem::start() {
    // Signals are the program's own business.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Bonkora");
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) {
        return nullptr;
    }
    return std::make_unique<SdlSystem>(Key{});
}

}  // namespace bonkora::detector
