#include "bridge/DetectorEvent.h"

namespace bonkora {
namespace {

template <typename T>
const T* valueOf(const platform::JsonObject& values, std::string_view key) {
    const auto found = values.find(key);
    return found == values.end() ? nullptr : std::get_if<T>(&found->second);
}

}  // namespace

const std::string* DetectorEvent::type() const {
    return valueOf<std::string>(values, "type");
}

std::optional<double> DetectorEvent::amplitude() const {
    const double* const value = valueOf<double>(values, "amplitude");
    return value == nullptr ? std::nullopt : std::optional(*value);
}

const std::string* DetectorEvent::message() const {
    return valueOf<std::string>(values, "message");
}

}  // namespace bonkora
