// The small files through which the system describes and sets up a device: reading them, and
// holding them at values of ours.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/Descriptor.h"

namespace bonkora::detector {

// Nothing when there is no such regular file, it cannot be read or holds more than `limit` bytes.
// Never waits: a pipe or a device of that name is refused.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit = 4096);

// The first line of it, trimmed, or nothing.
std::optional<std::string> readAttribute(const std::string& path);

// The whole attribute as a finite number, or nothing.
std::optional<double> readNumber(const std::string& path);

// False when the file is missing, may not be written or refuses the value.
[[nodiscard]] bool writeAttribute(const std::string& path, const std::string& value);

// Keeps attribute files at values of ours, and writes their old values back, the last one first,
// when it is destroyed. The files stay open meanwhile, so that this works too after the program has
// given up root's rights.
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
