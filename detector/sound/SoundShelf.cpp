#include "detector/sound/SoundShelf.h"

#include <SDL_thread.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace bonkora::detector {

namespace {

class LoadedShelf final : public SoundShelf {
  public:
    LoadedShelf(std::vector<Sound> theSounds, std::unique_ptr<SoundChoice> theChoice)
        : sounds(std::move(theSounds)), choice(std::move(theChoice)) {}

    Sound take(double time) override {
        return sounds.empty() ? nullptr : sounds[choice->next(sounds.size(), time)];
    }
    bool isEmpty() const override { return sounds.empty(); }

  private:
    const std::vector<Sound> sounds;
    const std::unique_ptr<SoundChoice> choice;
};

class ReadingShelf final : public SoundShelf {
  public:
    ReadingShelf(std::string theFolder, std::unique_ptr<SoundChoice> theChoice)
        : folder(std::move(theFolder)), choice(std::move(theChoice)), reader([this] {
              readAhead();
              SDL_TLSCleanup();  // SDL keeps its errors for each thread, and cleans up its own only
          }) {}
    ReadingShelf(const ReadingShelf&) = delete;
    ReadingShelf& operator=(const ReadingShelf&) = delete;
    ~ReadingShelf() override {
        {
            const std::lock_guard lock{mutex};
            stopping = true;
        }
        wanted.notify_one();
        reader.join();
    }

    Sound take(double /*time*/) override {
        const std::lock_guard lock{mutex};
        if (next) {
            last = std::exchange(next, nullptr);
            wanted.notify_one();
        }
        return last;
    }

    bool isEmpty() const override { return empty; }

  private:
    void readAhead() {
        files = soundFilesIn(folder, stopping);
        while (!files.empty()) {
            {
                std::unique_lock lock{mutex};
                wanted.wait(lock, [this] { return stopping || !next; });
            }
            if (stopping) {
                return;
            }
            const auto index = choice->next(files.size(), 0.0);
            auto sound = readSound(files[index], stopping);
            if (!sound) {
                files.erase(files.begin() + static_cast<std::ptrdiff_t>(index));
                continue;
            }
            const std::lock_guard lock{mutex};
            next = std::move(sound);
        }
        empty = true;
    }

    const std::string folder;
    std::vector<std::string> files;  // the reader's; those that hold no sound leave it
    const std::unique_ptr<SoundChoice> choice;
    std::mutex mutex;
    std::condition_variable wanted;
    Sound next;
    Sound last;
    std::atomic<bool> stopping{false};
    std::atomic<bool> empty{false};
    std::thread reader;  // the last member: it uses all others
};

}  // namespace

std::unique_ptr<SoundShelf> SoundShelf::loaded(const std::string& folder,
                                               std::unique_ptr<SoundChoice> choice) {
    const std::atomic<bool> never{false};
    std::vector<Sound> sounds;
    for (const auto& file : soundFilesIn(folder, never)) {
        if (auto sound = readSound(file, never)) {
            sounds.push_back(std::move(sound));
        }
    }
    return std::make_unique<LoadedShelf>(std::move(sounds), std::move(choice));
}

std::unique_ptr<SoundShelf> SoundShelf::readingAhead(std::string folder,
                                                     std::unique_ptr<SoundChoice> choice) {
    return std::make_unique<ReadingShelf>(std::move(folder), std::move(choice));
}

}  // namespace bonkora::detector
