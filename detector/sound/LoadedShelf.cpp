#include <utility>

#include "detector/sound/SoundShelf.h"

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

}  // namespace

std::unique_ptr<SoundShelf> SoundShelf::loaded(const std::vector<std::string>& files,
                                               std::unique_ptr<SoundChoice> choice) {
    const std::atomic<bool> never{false};
    std::vector<Sound> sounds;
    for (const auto& file : files) {
        if (auto sound = readSound(file, never)) {
            sounds.push_back(std::move(sound));
        }
    }
    return std::make_unique<LoadedShelf>(std::move(sounds), std::move(choice));
}

}  // namespace bonkora::detector
