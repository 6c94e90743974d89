// ScanLayout: how the readings of a buffered industrial I/O device lie in the bytes that its
// character device gives. Values; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace bonkora::detector {

// One channel's form, as the kernel describes it: "le:s12/16>>4".
struct ScanElement {
    bool bigEndian = false;
    bool isSigned = false;
    unsigned bits = 0;         // that count
    unsigned storageBits = 0;  // 8, 16, 32 or 64
    unsigned shift = 0;        // of the bits that count, to the right
    int index = 0;             // place among the channels
    std::size_t offset = 0;    // bytes from the scan's beginning; see layOut()

    // The channel's value within the bytes of one whole scan.
    std::int64_t valueIn(const char* scan) const;
};

std::optional<ScanElement> parseScanElement(std::string_view type, int index);

// Gives each element its offset and tells the size of one scan in bytes. Every channel lies at a
// multiple of its own size, and the scan's size is a multiple of the largest.
std::size_t layOut(const std::vector<ScanElement*>& elements);

}  // namespace bonkora::detector
