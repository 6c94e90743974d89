#include "platform/WakePipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace bonkora::platform {

std::unique_ptr<WakePipe> WakePipe::make() {
    auto pipe = Pipe::make();
    if (!pipe) {
        return nullptr;
    }
    ::fcntl(pipe->fileHandleForReading.get(), F_SETFL, O_NONBLOCK);
    ::fcntl(pipe->fileHandleForWriting.get(), F_SETFL, O_NONBLOCK);
    return std::make_unique<WakePipe>(*std::move(pipe));
}

void WakePipe::set() const {
    const int saved = errno;
    const char byte = 0;
    // A pipe that is full wakes as well.
    [[maybe_unused]] const auto written = ::write(pipe.fileHandleForWriting.get(), &byte, 1);
    errno = saved;
}

void WakePipe::clear() const {
    std::array<char, 256> bytes{};
    while (::read(pipe.fileHandleForReading.get(), bytes.data(), bytes.size()) ==
           static_cast<ssize_t>(bytes.size())) {
    }
}

}  // namespace bonkora::platform
