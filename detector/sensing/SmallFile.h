// Reading small files whole, such as the system's attribute files. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace bonkora::detector {

// Nothing when there is no such regular file, it cannot be read or holds more than `limit` bytes.
// Never waits: a pipe or a device of that name is refused.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit = 4096);

// The first line of it, trimmed, or nothing.
std::optional<std::string> readAttribute(const std::string& path);

// The whole attribute as a finite number, or nothing.
std::optional<double> readNumber(const std::string& path);

}  // namespace bonkora::detector
