// The two queues that work is handed to. Any thread may submit.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace bonkora::platform {

// The serial queue of the main thread. The application's is Qt's event loop, the tests' a manual
// one with virtual time. Tasks run on the main thread only, those of one due time in the order of
// submission. What is submitted once the loop has ended is dropped.
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

// Background work after a delay, off the main thread. Work that is still pending when the program
// ends is dropped.
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
