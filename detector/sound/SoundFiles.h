// Sound files in folders, and reading them into memory.
#pragma once

#include <SDL_mixer.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace bonkora::detector {

// Ready to be played.
using Sound = std::shared_ptr<Mix_Chunk>;

// Longer sounds are cut there: a small file can hold hours, and no answer to a knock takes as long.
inline constexpr int longestSound = 60;  // s

// The folder's .mp3, .ogg, .flac and .wav files, whatever the case of their letters, of at most
// 16 MiB, in the order of their names with numbers by their value. Empty when there is none, the
// folder cannot be read, or `stopping` becomes true meanwhile. Any thread.
std::vector<std::string> soundFilesIn(const std::string& folder, const std::atomic<bool>& stopping);

// The sound in the mixer's form; nothing when the file holds none, or `stopping` becomes true. The
// mixer must be open. Any thread.
Sound readSound(const std::string& path, const std::atomic<bool>& stopping);

}  // namespace bonkora::detector
