// Sound files in folders, and reading them into memory.
#pragma once

#include <SDL_mixer.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace bonkora::detector {

using Sound = std::shared_ptr<Mix_Chunk>;

// The folder's .mp3, .ogg, .flac and .wav files, whatever the case of their letters, of at most
// 16 MiB, in the order of their names with numbers by their value. Empty when there is none or the
// folder cannot be read. Any thread.
std::vector<std::string> soundFilesIn(const std::string& folder);

// The whole sound, ready to be played; nothing when the file holds none. Reading ends early, with
// what was read until then or nothing, once `stopping` is true. The mixer must be open. Any thread.
Sound readSound(const std::string& path, const std::atomic<bool>& stopping);

}  // namespace bonkora::detector
