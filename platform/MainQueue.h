// MainQueue: the serial queue of the main thread. The application's is Qt's event loop, the tests'
// a manual one with virtual time. Any thread may submit; tasks run on the main thread only, those
// of one due time in the order of submission. What is submitted once the loop has ended is dropped.
#pragma once

#include <chrono>
#include <functional>

namespace bonkora::platform {

class MainQueue {
  public:
    using Task = std::function<void()>;

    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue() = default;

    // Runs `task` in a later turn of the loop, never inside this call.
    virtual void async(Task task) = 0;
    // Runs `task` no earlier than `delay` from now. There is no way to cancel it.
    virtual void asyncAfter(std::chrono::milliseconds delay, Task task) = 0;
};

}  // namespace bonkora::platform
