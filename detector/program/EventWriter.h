// EventWriter: writes the detector's report, one line for each event, as it happens. It never waits
// for the reader: what a full pipe does not take is kept and sent when there is room. One thread.
#pragma once

#include <string>
#include <string_view>

namespace bonkora::detector {

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
