#include "app/QtMainQueue.h"

#include <QTimer>
#include <utility>

namespace bonkora {

QtMainQueue::QtMainQueue() : context(std::make_unique<QObject>()) {}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::async(Task task) {
    const std::lock_guard lock(mutex);
    if (context) {
        QMetaObject::invokeMethod(context.get(), std::move(task), Qt::QueuedConnection);
    }
}

void QtMainQueue::asyncAfter(std::chrono::milliseconds delay, Task task) {
    const std::lock_guard lock(mutex);
    if (context) {
        // Precise timers of one due time fire in the order in which they were set.
        QTimer::singleShot(delay, Qt::PreciseTimer, context.get(), std::move(task));
    }
}

void QtMainQueue::close() {
    std::unique_ptr<QObject> closed;
    const std::lock_guard lock(mutex);
    closed.swap(context);
}

}  // namespace bonkora
