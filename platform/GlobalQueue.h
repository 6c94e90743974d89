// GlobalQueue: background work after a delay, off the main thread. Any thread may submit. Work
// that is still pending when the program ends is dropped.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace bonkora::platform {

class GlobalQueue {
  public:
    using Task = std::function<void()>;

    GlobalQueue() = default;
    GlobalQueue(const GlobalQueue&) = delete;
    GlobalQueue& operator=(const GlobalQueue&) = delete;
    virtual ~GlobalQueue() = default;

    // Runs `task` on a background thread no earlier than `delay` from now.
    virtual void asyncAfter(std::chrono::milliseconds delay, Task task) = 0;

    // The real one: a single thread that lives only while something is pending.
    static std::shared_ptr<GlobalQueue> real();
};

}  // namespace bonkora::platform
