// Reads one JSON text whose top level is an object. Only the top level is kept: a nested object or
// array is one opaque value. Accepts what RFC 8259 accepts, up to a depth of 512; a text with a
// NUL byte is refused, a byte-order mark before the object is skipped. Any thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace bonkora::platform {

struct JsonNull {};
struct JsonNested {};
using JsonValue = std::variant<JsonNull, bool, double, std::string, JsonNested>;
// Of two equal keys the first one counts.
using JsonObject = std::map<std::string, JsonValue, std::less<>>;

// Nothing when `text` is not JSON or its top level is not an object. Time and memory are linear in
// the text, whatever it holds.
std::optional<JsonObject> readJsonObject(std::string_view text);

}  // namespace bonkora::platform
