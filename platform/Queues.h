// The two queues that work is handed to. Any thread may submit.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>

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

// How much waits for the main thread, of one source that can be faster than it: whoever adds beyond
// the capacity waits until something has been dealt with. Held by shared_ptr. Any thread.
class Backlog : public std::enable_shared_from_this<Backlog> {
  public:
    // A part of the backlog, for as long as anybody holds it: the task that deals with it, whether
    // it has run or is dropped.
    using Share = std::shared_ptr<void>;

    explicit Backlog(std::size_t theCapacity) : capacity(theCapacity) {}
    Backlog(const Backlog&) = delete;
    Backlog& operator=(const Backlog&) = delete;
    ~Backlog() = default;

    // Waits until `size` more bytes fit. Where nothing else waits, they do, however many they are.
    // Never called by the thread that deals with the backlog.
    Share add(std::size_t size);

    // Ends every wait, now and from now on: nobody needs what comes.
    void close();

  private:
    void remove(std::size_t size);

    const std::size_t capacity;
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t used = 0;
    bool isClosed = false;
};

}  // namespace bonkora::platform
