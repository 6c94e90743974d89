// HeldSettings: attribute files of the system that are kept at values of ours and get their own
// back, the last one first, when the object goes. The files stay open meanwhile, so that this also
// works for a program that has given up its rights since. One thread.
#pragma once

#include <string>
#include <vector>

#include "platform/UniqueDescriptor.h"

namespace bonkora::detector {

class HeldSettings {
  public:
    HeldSettings() = default;
    HeldSettings(const HeldSettings&) = delete;
    HeldSettings& operator=(const HeldSettings&) = delete;
    ~HeldSettings();

    // False when the file is missing, may not be written or refuses the value.
    bool hold(const std::string& path, const std::string& value);

  private:
    struct Setting {
        platform::UniqueDescriptor file;
        std::string before;
    };
    std::vector<Setting> settings;
};

}  // namespace bonkora::detector
