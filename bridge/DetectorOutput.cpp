#include "bridge/DetectorOutput.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/JsonReader.h"
#include "platform/Text.h"

namespace bonkora {
namespace {

using Kind = DetectorEvent::Kind;

// The value under `key`; null when it is absent or of another type.
template <typename T>
T* valueOf(platform::JsonObject& object, std::string_view key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : std::get_if<T>(&found->second);
}

}  // namespace

std::optional<DetectorEvent> readDetectorEvent(std::string_view line) {
    auto object = platform::readJsonObject(line);
    if (!object) {
        return std::nullopt;
    }
    const auto* const type = valueOf<std::string>(*object, "type");
    if (type == nullptr) {
        return DetectorEvent{.kind = Kind::nothing};
    }
    if (*type == "slap" || *type == "hit") {
        const auto* const amplitude = valueOf<double>(*object, "amplitude");
        return DetectorEvent{.kind = Kind::slap,
                             .amplitude = amplitude ? std::optional(*amplitude) : std::nullopt};
    }
    if (*type == "ready") {
        return DetectorEvent{.kind = Kind::ready};
    }
    if (*type == "error") {
        auto* const message = valueOf<std::string>(*object, "message");
        return message ? DetectorEvent{.kind = Kind::error, .message = std::move(*message)}
                       : DetectorEvent{.kind = Kind::nothing};
    }
    return DetectorEvent{.kind = Kind::other};
}

bool plainLineCountsAsSlap(std::string_view line) {
    constexpr std::array<std::string_view, 3> words{"slap", "hit", "playing"};
    const std::string lowercased = platform::lowercasedAscii(line);
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
        return lowercased.find(word) != std::string::npos;
    });
}

}  // namespace bonkora
