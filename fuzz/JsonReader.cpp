// Our JSON reader against simdjson: the same texts are objects, with the same values at the top.
#include <simdjson.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "fuzz/Require.h"
#include "platform/JsonReader.h"

namespace bonkora::fuzz {
namespace {

using simdjson::dom::element_type;

bool sameValue(const platform::JsonValue& ours, simdjson::dom::element theirs) {
    switch (theirs.type()) {
        case element_type::NULL_VALUE:
            return std::holds_alternative<platform::JsonNull>(ours);
        case element_type::BOOL:
            return std::get<bool>(ours) == theirs.get_bool().value();
        case element_type::STRING:
            return std::get<std::string>(ours) == theirs.get_string().value();
        case element_type::ARRAY:
        case element_type::OBJECT:
            return std::holds_alternative<platform::JsonNested>(ours);
        default:
            return std::get<double>(ours) == theirs.get_double().value();
    }
}

std::ptrdiff_t openings(const std::string& text) {
    return std::count_if(text.begin(), text.end(), [](char c) { return c == '[' || c == '{'; });
}

// Nineteen digits may be past 64 bits.
bool mayHoldALongInteger(const std::string& text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    int digits = 0;
    return std::any_of(text.begin(), text.end(), [&](char c) {
        digits = isDigit(c) ? digits + 1 : 0;
        return digits >= 19;
    });
}

void check(const std::string& text) {
    static simdjson::dom::parser parser;
    const auto ours = platform::readJsonObject(text);
    simdjson::dom::element theirs;
    const auto error = parser.parse(text).get(theirs);

    // They refuse integers past 64 bits and a byte-order mark, and read deeper than ours.
    if (error == simdjson::NUMBER_ERROR || (error && mayHoldALongInteger(text)) ||
        openings(text) > 512 || text.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        return;
    }
    require(ours.has_value() == (!error && theirs.is_object()),
            "both readers agree on what an object is");
    if (!ours) {
        return;
    }
    const simdjson::dom::object object = theirs.get_object();
    for (const auto& ourEntry : *ours) {
        // Of equal keys the first is meant.
        const auto field = std::find_if(object.begin(), object.end(), [&](const auto& entry) {
            return entry.key == ourEntry.first;
        });
        require(field != object.end(), "every key of ours is one of theirs");
        require(sameValue(ourEntry.second, (*field).value), "both readers see the same value");
    }
    for (const auto entry : object) {
        require(ours->count(std::string(entry.key)) == 1, "every key of theirs is one of ours");
    }
}

}  // namespace
}  // namespace bonkora::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    bonkora::fuzz::check(std::string(data, data + size));
    return 0;
}
