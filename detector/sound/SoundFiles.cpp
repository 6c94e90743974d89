#include "detector/sound/SoundFiles.h"

#include <SDL.h>
#include <sndfile.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

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

// libsndfile reads piece by piece, so that reading can stop at any time.
using OpenFile = std::unique_ptr<SNDFILE, decltype(&sf_close)>;

// Bytes in the form in which the mixer plays them.
class MixerForm {
  public:
    explicit MixerForm(const SF_INFO& from)
        : stream{
              SDL_NewAudioStream(AUDIO_F32SYS, static_cast<Uint8>(from.channels), from.samplerate,
                                 format.samples, static_cast<Uint8>(format.channels), format.rate),
              SDL_FreeAudioStream} {}

    bool put(const std::vector<float>& samples, std::size_t count) {
        return stream != nullptr &&
               SDL_AudioStreamPut(stream.get(), samples.data(),
                                  static_cast<int>(count * sizeof(float))) == 0 &&
               drain();
    }
    bool finish() {
        return stream != nullptr && SDL_AudioStreamFlush(stream.get()) == 0 && drain();
    }

    std::vector<Uint8> bytes;

  private:
    struct Format {
        int rate = 0;
        Uint16 samples = 0;
        int channels = 0;
        Format() { Mix_QuerySpec(&rate, &samples, &channels); }
    };

    bool drain() {
        const int available = SDL_AudioStreamAvailable(stream.get());
        const auto before = bytes.size();
        bytes.resize(before + static_cast<std::size_t>(available));
        return SDL_AudioStreamGet(stream.get(), bytes.data() + before, available) == available;
    }

    const Format format;
    const std::unique_ptr<SDL_AudioStream, decltype(&SDL_FreeAudioStream)> stream;
};

// The chunk points into the bytes beside it.
struct HeldSound {
    std::vector<Uint8> bytes;
    Mix_Chunk chunk{};
};

}  // namespace

std::vector<std::string> soundFilesIn(const std::string& folder,
                                      const std::atomic<bool>& stopping) {
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry{folder, error}, end; !error && entry != end;
         entry.increment(error)) {
        if (stopping) {
            return {};
        }
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
    SF_INFO info{};
    const OpenFile file{sf_open(path.c_str(), SFM_READ, &info), &sf_close};
    constexpr int mostChannels = 8;  // that SDL can mix down
    if (!file || info.channels < 1 || info.channels > mostChannels || info.samplerate < 1000 ||
        info.samplerate > 384000) {
        return nullptr;
    }
    constexpr sf_count_t pieceFrames = 4096;
    MixerForm form{info};
    std::vector<float> piece(static_cast<std::size_t>(pieceFrames * info.channels));
    for (sf_count_t left = sf_count_t{longestSound} * info.samplerate; left > 0;) {
        const auto count = sf_readf_float(file.get(), piece.data(), std::min(left, pieceFrames));
        if (stopping) {
            return nullptr;
        }
        if (count <= 0) {
            break;
        }
        if (!form.put(piece, static_cast<std::size_t>(count * info.channels))) {
            return nullptr;
        }
        left -= count;
    }
    if (!form.finish() || form.bytes.empty()) {
        return nullptr;
    }
    auto held = std::make_shared<HeldSound>();
    held->bytes = std::move(form.bytes);
    held->chunk.abuf = held->bytes.data();
    held->chunk.alen = static_cast<Uint32>(held->bytes.size());
    held->chunk.volume = MIX_MAX_VOLUME;
    return {held, &held->chunk};
}

}  // namespace bonkora::detector
