// SoundChoice: which of a set's sounds answers a knock. One thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace bonkora::detector {

enum class SoundSet { pain, sexy, halo, custom };

class SoundChoice {
  public:
    SoundChoice() = default;
    SoundChoice(const SoundChoice&) = delete;
    SoundChoice& operator=(const SoundChoice&) = delete;
    virtual ~SoundChoice() = default;

    // One of `count` sounds, at least 1, for a knock at `time` s of the signal; times never fall.
    virtual std::size_t next(std::size_t count, double time) = 0;

    // pain and custom: by chance, never the same twice running. sexy: the later ones the faster one
    // knocks. halo: one after the other, in a circle.
    static std::unique_ptr<SoundChoice> of(SoundSet set, std::uint32_t seed);
};

}  // namespace bonkora::detector
