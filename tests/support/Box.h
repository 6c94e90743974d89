// One value handed from a background thread to the test. (std::future would do, but for the thread
// sanitizer, which does not see into the uninstrumented part of its library.)
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

namespace bonkora::test {

template <typename T>
class Box {
  public:
    // Once; a second time is an error of the one who calls.
    void put(T theValue) {
        const std::lock_guard lock(mutex);
        if (value) {
            std::terminate();
        }
        value = std::move(theValue);
        filled.notify_all();
    }

    // Waits up to 20 s, then throws.
    T take() {
        std::unique_lock lock(mutex);
        if (!filled.wait_for(lock, std::chrono::seconds(20),
                             [this] { return value.has_value(); })) {
            throw std::runtime_error("nothing came");
        }
        return *value;
    }

    // For claims that nothing comes yet.
    bool isFilledWithin(std::chrono::milliseconds patience) {
        std::unique_lock lock(mutex);
        return filled.wait_for(lock, patience, [this] { return value.has_value(); });
    }

  private:
    std::mutex mutex;
    std::condition_variable filled;
    std::optional<T> value;
};

}  // namespace bonkora::test
