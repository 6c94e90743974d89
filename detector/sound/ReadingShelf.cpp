#include <SDL_thread.h>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "detector/sound/SoundShelf.h"

namespace bonkora::detector {

namespace {

class ReadingShelf final : public SoundShelf {
  public:
    ReadingShelf(std::vector<std::string> theFiles, std::unique_ptr<SoundChoice> theChoice)
        : files(std::move(theFiles)),
          choice(std::move(theChoice)),
          empty(files.empty()),
          reader([this] {
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

    std::vector<std::string> files;  // the reader's; those that hold no sound leave it
    const std::unique_ptr<SoundChoice> choice;
    std::mutex mutex;
    std::condition_variable wanted;
    Sound next;
    Sound last;
    std::atomic<bool> stopping{false};
    std::atomic<bool> empty;
    std::thread reader;  // the last member: it uses all others
};

}  // namespace

std::unique_ptr<SoundShelf> SoundShelf::readingAhead(std::vector<std::string> files,
                                                     std::unique_ptr<SoundChoice> choice) {
    return std::make_unique<ReadingShelf>(std::move(files), std::move(choice));
}

}  // namespace bonkora::detector
