// SoundShelf: the sounds of one set, ready to be taken. One thread takes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "detector/sound/SoundChoice.h"
#include "detector/sound/SoundFiles.h"

namespace bonkora::detector {

class SoundShelf {
  public:
    SoundShelf() = default;
    SoundShelf(const SoundShelf&) = delete;
    SoundShelf& operator=(const SoundShelf&) = delete;
    virtual ~SoundShelf() = default;

    // The sound for a knock at `time` s of the signal; nothing when none is ready yet.
    virtual Sound take(double time) = 0;
    // Whether there turned out to be nothing that sounds.
    virtual bool isEmpty() const = 0;

    // A small set, kept in memory as a whole.
    static std::unique_ptr<SoundShelf> loaded(const std::string& folder,
                                              std::unique_ptr<SoundChoice> choice);
    // A folder of any size: a thread of its own looks into it, and reads the next sound while the
    // last one is played, so that two are in memory. Knocks that come faster hear the last one
    // again.
    static std::unique_ptr<SoundShelf> readingAhead(std::string folder,
                                                    std::unique_ptr<SoundChoice> choice);
};

}  // namespace bonkora::detector
