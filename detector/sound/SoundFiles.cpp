#include "detector/sound/SoundFiles.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "platform/Text.h"

namespace bonkora::detector {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t largestFile = 16UL * 1024 * 1024;  // bytes

bool isSoundFile(const fs::directory_entry& entry) {
    const auto ending = platform::lowercasedAscii(entry.path().extension().string());
    std::error_code error;
    return (ending == ".mp3" || ending == ".ogg" || ending == ".flac" || ending == ".wav") &&
           entry.is_regular_file(error) && entry.file_size(error) <= largestFile && !error;
}

// A file that seems to end once `stopping` is true: the way to interrupt SDL's decoders.
struct StoppableFile {
    SDL_RWops* file;
    const std::atomic<bool>* stopping;

    static StoppableFile& of(SDL_RWops* self) {
        return *static_cast<StoppableFile*>(self->hidden.unknown.data1);
    }
    static Sint64 size(SDL_RWops* self) { return SDL_RWsize(of(self).file); }
    static Sint64 seek(SDL_RWops* self, Sint64 offset, int from) {
        return SDL_RWseek(of(self).file, offset, from);
    }
    static std::size_t read(SDL_RWops* self, void* bytes, std::size_t size, std::size_t count) {
        return of(self).stopping->load() ? 0 : SDL_RWread(of(self).file, bytes, size, count);
    }
    static std::size_t write(SDL_RWops*, const void*, std::size_t, std::size_t) { return 0; }
    static int close(SDL_RWops*) { return 0; }  // its owner sees to that
};

}  // namespace

std::vector<std::string> soundFilesIn(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry{folder, error}, end; !error && entry != end;
         entry.increment(error)) {
        if (isSoundFile(*entry)) {
            files.push_back(entry->path());
        }
    }
    // Names of one length by their letters: 9.wav stands before 10.wav.
    std::sort(files.begin(), files.end(), [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    return files;
}

Sound readSound(const std::string& path, const std::atomic<bool>& stopping) {
    const std::unique_ptr<SDL_RWops, int (*)(SDL_RWops*)> file{SDL_RWFromFile(path.c_str(), "rb"),
                                                               SDL_RWclose};
    if (!file) {
        return nullptr;
    }
    StoppableFile stoppable{file.get(), &stopping};
    const std::unique_ptr<SDL_RWops, void (*)(SDL_RWops*)> source{SDL_AllocRW(), SDL_FreeRW};
    if (!source) {
        return nullptr;
    }
    source->size = &StoppableFile::size;
    source->seek = &StoppableFile::seek;
    source->read = &StoppableFile::read;
    source->write = &StoppableFile::write;
    source->close = &StoppableFile::close;
    source->hidden.unknown.data1 = &stoppable;
    Sound sound{Mix_LoadWAV_RW(source.get(), 0), [](Mix_Chunk* chunk) {
                    if (chunk != nullptr) {
                        Mix_FreeChunk(chunk);
                    }
                }};
    return sound && sound->alen > 0 ? sound : nullptr;
}

}  // namespace bonkora::detector
