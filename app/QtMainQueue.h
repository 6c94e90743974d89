// QtMainQueue: the main queue that is Qt's event loop. Made and closed on the main thread; any
// thread may submit, and may hold it longer than the application lives.
#pragma once

#include <QObject>
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
    std::mutex mutex;
    std::unique_ptr<QObject> context;  // the tasks' receiver, until closed
};

}  // namespace bonkora
