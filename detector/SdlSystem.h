// SdlSystem: SDL's audio part, in use for as long as one of these lives. Main thread.
#pragma once

#include <memory>

namespace bonkora::detector {

class SdlSystem {
    struct Key {};

  public:
    explicit SdlSystem(Key) {}
    SdlSystem(const SdlSystem&) = delete;
    SdlSystem& operator=(const SdlSystem&) = delete;
    ~SdlSystem();

    // Nothing when no sound system answers.
    static std::unique_ptr<SdlSystem> start();
};

}  // namespace bonkora::detector
