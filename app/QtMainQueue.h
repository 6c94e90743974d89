// QtMainQueue: the main queue that is Qt's event loop. Made and closed on the main thread; any
// thread may submit, and may hold it longer than the application lives.
//
// However much is submitted, the loop stays fair: in each of its turns tasks run for some
// milliseconds only, between input, painting and timers. Delayed tasks are timers of their own, so
// that they are on time whatever waits.
#pragma once

#include <QObject>
#include <deque>
#include <memory>
#include <mutex>

#include "platform/Queues.h"

namespace bonkora {

class QtMainQueue final : public platform::MainQueue {
  public:
    QtMainQueue();
    ~QtMainQueue() override;

    void async(Task task) override;
    void asyncAfter(std::chrono::milliseconds delay, Task task) override;

    // Drops what is pending and whatever comes later: the event loop has ended.
    void close();

  private:
    class Turns;

    Task takeNext();

    std::mutex mutex;
    std::deque<Task> tasks;
    bool isAwake = false;            // somebody sees to `tasks`
    std::unique_ptr<Turns> context;  // the tasks' receiver, until closed
};

}  // namespace bonkora
