#include "detector/sensing/SystemFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "detector/Number.h"
#include "platform/Descriptor.h"
#include "platform/Text.h"

namespace bonkora::detector {

namespace {

platform::UniqueDescriptor openForWriting(const std::string& path) {
    return platform::UniqueDescriptor{::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_TRUNC)};
}

// An attribute takes its value in one write at the beginning, as a shell's echo does it.
bool write(int file, std::string_view value) {
    const std::string line = std::string{value} + "\n";
    return ::pwrite(file, line.data(), line.size(), 0) == static_cast<ssize_t>(line.size());
}

}  // namespace

std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit) {
    const platform::UniqueDescriptor file{
        ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 4096> chunk{};
    for (;;) {
        const auto count = ::read(file.get(), chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            return text;
        }
        text.append(chunk.data(), static_cast<std::size_t>(count));
        if (text.size() > limit) {
            return std::nullopt;
        }
    }
}

std::optional<std::string> readAttribute(const std::string& path) {
    const auto text = readSmallFile(path);
    if (!text) {
        return std::nullopt;
    }
    const auto line = text->substr(0, text->find('\n'));
    if (!platform::isValidUtf8(line)) {
        return std::nullopt;
    }
    return std::string{platform::trimmed(line)};
}

std::optional<double> readNumber(const std::string& path) {
    const auto text = readAttribute(path);
    return text ? parseNumber<double>(*text) : std::nullopt;
}

bool writeAttribute(const std::string& path, const std::string& value) {
    const auto file = openForWriting(path);
    return file && write(file.get(), value);
}

HeldSettings::~HeldSettings() {
    for (; !settings.empty(); settings.pop_back()) {
        // A device that has gone cannot be restored, and need not be.
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
    auto file = openForWriting(path);
    if (!file || !write(file.get(), value)) {
        return false;
    }
    settings.push_back({std::move(file), std::move(*before)});
    return true;
}

}  // namespace bonkora::detector
