#include "detector/sensing/HeldSettings.h"

#include <fcntl.h>
#include <unistd.h>

#include <string_view>
#include <utility>

#include "detector/sensing/SmallFile.h"

namespace bonkora::detector {

namespace {

// An attribute takes its value in one write at the beginning, as a shell's echo does it.
bool write(int file, std::string_view value) {
    const std::string line = std::string{value} + "\n";
    return ::pwrite(file, line.data(), line.size(), 0) == static_cast<ssize_t>(line.size());
}

}  // namespace

HeldSettings::~HeldSettings() {
    for (; !settings.empty(); settings.pop_back()) {
        // A device that has gone takes nothing back; that is as it should be.
        static_cast<void>(write(settings.back().file.get(), settings.back().before));
    }
}

bool HeldSettings::hold(const std::string& path, const std::string& value) {
    auto before = readAttribute(path);
    if (!before) {
        return false;
    }
    if (*before == value) {
        return true;
    }
    platform::UniqueDescriptor file{::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_TRUNC)};
    if (!file || !write(file.get(), value)) {
        return false;
    }
    settings.push_back({std::move(file), std::move(*before)});
    return true;
}

}  // namespace bonkora::detector
