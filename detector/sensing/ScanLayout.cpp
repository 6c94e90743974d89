#include "detector/sensing/ScanLayout.h"

#include <algorithm>

#include "detector/Number.h"

namespace bonkora::detector {

namespace {

std::size_t alignedUp(std::size_t size, std::size_t step) {
    return (size + step - 1) / step * step;
}

// Takes the decimal number at the beginning of `text`.
std::optional<unsigned> takeNumber(std::string_view& text) {
    const auto length = std::min(text.find_first_not_of("0123456789"), text.size());
    const auto number = parseNumber<unsigned>(text.substr(0, length));
    text.remove_prefix(length);
    return number;
}

bool take(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) {
        return false;
    }
    text.remove_prefix(expected.size());
    return true;
}

}  // namespace

std::optional<ScanElement> parseScanElement(std::string_view type, int index) {
    ScanElement element;
    element.index = index;
    element.bigEndian = type.starts_with("be:");
    if (!take(type, "be:") && !take(type, "le:")) {
        return std::nullopt;
    }
    element.isSigned = type.starts_with("s");
    if (!take(type, "s") && !take(type, "u")) {
        return std::nullopt;
    }
    const auto bits = takeNumber(type);
    if (!bits || !take(type, "/")) {
        return std::nullopt;
    }
    const auto storageBits = takeNumber(type);
    if (!storageBits ||
        (*storageBits != 8 && *storageBits != 16 && *storageBits != 32 && *storageBits != 64)) {
        return std::nullopt;
    }
    std::optional<unsigned> shift = 0;
    if (take(type, ">>")) {
        shift = takeNumber(type);
    }
    if (!shift || !type.empty() || *bits == 0 || *bits > *storageBits ||
        *shift > *storageBits - *bits) {
        return std::nullopt;
    }
    element.bits = *bits;
    element.storageBits = *storageBits;
    element.shift = *shift;
    return element;
}

std::int64_t ScanElement::valueIn(const char* scan) const {
    std::uint64_t word = 0;
    const std::size_t bytes = storageBits / 8;
    for (std::size_t i = 0; i < bytes; ++i) {
        const auto byte =
            static_cast<unsigned char>(scan[offset + (bigEndian ? i : bytes - 1 - i)]);
        word = word << 8U | byte;
    }
    // To the top and back: this drops what does not count, and extends the sign.
    word = word >> shift << (64 - bits);
    return isSigned ? static_cast<std::int64_t>(word) >> (64 - bits)
                    : static_cast<std::int64_t>(word >> (64 - bits));
}

std::size_t layOut(const std::vector<ScanElement*>& elements) {
    auto ordered = elements;
    std::sort(ordered.begin(), ordered.end(),
              [](const ScanElement* a, const ScanElement* b) { return a->index < b->index; });
    std::size_t size = 0;
    std::size_t largest = 1;
    for (ScanElement* const element : ordered) {
        const std::size_t bytes = element->storageBits / 8;
        element->offset = alignedUp(size, bytes);
        size = element->offset + bytes;
        largest = std::max(largest, bytes);
    }
    return alignedUp(size, largest);
}

}  // namespace bonkora::detector
