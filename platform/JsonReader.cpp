#include "platform/JsonReader.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace bonkora::platform {
namespace {

constexpr int greatestDepth = 512;

// Keeps the top level and counts the depth; returning false ends the reading.
class TopLevel final : public nlohmann::json_sax<nlohmann::json> {
  public:
    JsonObject object;

    bool null() override { return take(JsonNull{}); }
    bool boolean(bool value) override { return take(value); }
    bool number_integer(number_integer_t value) override {
        return take(static_cast<double>(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return take(static_cast<double>(value));
    }
    bool number_float(number_float_t value, const string_t&) override { return take(value); }
    bool string(string_t& value) override { return take(std::move(value)); }
    bool binary(binary_t&) override { return false; }

    bool key(string_t& name) override {
        if (depth == 1) {
            currentKey = std::move(name);
        }
        return true;
    }
    bool start_object(std::size_t) override { return begin(true); }
    bool start_array(std::size_t) override { return begin(false); }
    bool end_object() override { return end(); }
    bool end_array() override { return end(); }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
        return false;
    }

  private:
    template <typename T>
    bool take(T&& value) {
        if (depth == 1) {
            object.try_emplace(std::move(currentKey), std::forward<T>(value));
        }
        return depth > 0;  // a top-level scalar is refused
    }

    bool begin(bool isObject) {
        if (depth == 0 && !isObject) {
            return false;
        }
        if (depth == 1) {
            object.try_emplace(std::move(currentKey), JsonNested{});
        }
        return ++depth <= greatestDepth;
    }

    bool end() {
        --depth;
        return true;
    }

    int depth = 0;
    std::string currentKey;
};

}  // namespace

std::optional<JsonObject> readJsonObject(std::string_view text) {
    // The library takes a NUL byte for the end of the text, and allocates memory before it can tell
    // a plain line from an object. Both are cheaper to check here.
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark) {
        text.remove_prefix(byteOrderMark.size());
    }
    const auto first = text.find_first_not_of(" \t\n\r");
    if (first == std::string_view::npos || text[first] != '{' ||
        text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    TopLevel reader;
    if (!nlohmann::json::sax_parse(text, &reader)) {
        return std::nullopt;
    }
    return std::move(reader.object);
}

}  // namespace bonkora::platform
