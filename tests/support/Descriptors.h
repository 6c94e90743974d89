// What the process holds open, to be counted before and after.
#pragma once

#include <filesystem>
#include <iterator>

namespace bonkora::test {

inline long openDescriptors() {
#ifdef __APPLE__
    constexpr const char* folder = "/dev/fd";
#else
    constexpr const char* folder = "/proc/self/fd";
#endif
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

}  // namespace bonkora::test
