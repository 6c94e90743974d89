#include "detector/sensing/SmallFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "detector/Number.h"
#include "platform/Text.h"
#include "platform/UniqueDescriptor.h"

namespace bonkora::detector {

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

}  // namespace bonkora::detector
