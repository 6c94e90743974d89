#include "detector/program/EventWriter.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <nlohmann/json.hpp>

#include "platform/Text.h"

namespace bonkora::detector {

namespace {

constexpr std::size_t mostPending = 1 << 20;  // bytes; then the newest lines are lost

// Text that is not UTF-8, such as an odd path, is mended: a line must stay readable.
std::string line(const nlohmann::ordered_json& event) {
    return event.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// Four decimals say more than any sensor knows.
double rounded(double amplitude) {
    return std::round(amplitude * 1e4) / 1e4;
}

}  // namespace

EventWriter::EventWriter(int theDescriptor, bool asJson)
    : descriptor(theDescriptor), json(asJson) {}

void EventWriter::ready(std::string_view sensorKind, std::string_view sensorName) {
    send(json ? line({{"type", "ready"}, {"sensor", sensorKind}, {"device", sensorName}})
              : "Listening with the " + std::string{sensorKind} + ".");
}

void EventWriter::knock(double amplitude) {
    send(json ? line({{"type", "slap"}, {"amplitude", rounded(amplitude)}})
              : "Knock of " + platform::shortestDecimal(rounded(amplitude)));
}

void EventWriter::error(std::string_view message) {
    send(json ? line({{"type", "error"}, {"message", message}}) : "Error: " + std::string{message});
}

void EventWriter::send(std::string line) {
    line += '\n';
    if (pending.size() + line.size() <= mostPending) {
        pending += line;
    }
    flush();
}

void EventWriter::flush() {
    while (!pending.empty() && !gone) {
        // A pipe that polls as writable takes PIPE_BUF bytes without waiting.
        pollfd output{descriptor, POLLOUT, 0};
        if (::poll(&output, 1, 0) <= 0) {
            return;  // no room, and a reader that may make some
        }
        const auto size = std::min<std::size_t>(pending.size(), PIPE_BUF);
        const auto written = ::write(descriptor, pending.data(), size);
        if (written > 0) {
            pending.erase(0, static_cast<std::size_t>(written));
        } else if (written < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        } else {
            gone = true;
            pending.clear();
        }
    }
}

}  // namespace bonkora::detector
