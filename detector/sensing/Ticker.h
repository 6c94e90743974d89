// Ticker: says when the next reading is due. The only clock of this room, so that a recording can
// also be read without waiting. One thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

namespace bonkora::detector {

class Ticker {
  public:
    Ticker() = default;
    Ticker(const Ticker&) = delete;
    Ticker& operator=(const Ticker&) = delete;
    virtual ~Ticker() = default;

    // Polls as readable when take() would give more than 0.
    virtual int descriptor() const = 0;
    // The periods that have passed since the last call.
    virtual std::uint64_t take() = 0;

    // Every `period` of real time, from now on; nothing when the system has no descriptor to give.
    static std::unique_ptr<Ticker> every(std::chrono::nanoseconds period);
    // `periods` at every call, at once.
    static std::unique_ptr<Ticker> always(std::uint64_t periods);
};

}  // namespace bonkora::detector
