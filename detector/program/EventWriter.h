// EventWriter: writes the detector's report, one line for each event, as it happens. It never waits
// for the reader: what a full pipe does not take is kept and sent when there is room. One thread.
#pragma once

#include <poll.h>

#include <string>
#include <string_view>

namespace bonkora::detector {

// To be asked of poll() for an output: then it tells, as POLLERR or POLLHUP, that the reader has
// gone. Linux tells that unasked; macOS does not watch a descriptor of which nothing is asked.
inline constexpr short readerGoes = POLLHUP;

// What poll() told of an output: whether its reader has gone.
constexpr bool readerHasGone(short told) {
    return (told & (POLLERR | POLLHUP)) != 0;
}

// Whether it cannot be polled at all, such as /dev/null on macOS. It has no reader to lose then,
// and always takes what is written.
constexpr bool cannotBePolled(short told) {
    return (told & POLLNVAL) != 0;
}

class EventWriter {
  public:
    // `json`: one JSON object a line, for programs; otherwise words for people, in which only an
    // error says what a user or a device has named.
    EventWriter(int descriptor, bool json);

    void ready(std::string_view sensorKind, std::string_view sensorName);
    void knock(double amplitude);
    void error(std::string_view message);

    // Sends what is kept, as far as the reader takes it.
    void flush();
    bool hasPending() const { return !pending.empty(); }
    // The reader has gone: no line can arrive any more.
    bool readerIsGone() const { return gone; }

  private:
    void send(std::string line);

    const int descriptor;
    const bool json;
    std::string pending;
    bool gone = false;
};

}  // namespace bonkora::detector
