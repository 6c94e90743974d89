#include "app/QtMainQueue.h"

#include <QDeadlineTimer>
#include <QThread>
#include <QTimer>
#include <utility>

namespace bonkora {

namespace {

// Precise timers of one due time fire in the order in which they were set.
void setTimer(QObject& context, std::chrono::milliseconds delay, QtMainQueue::Task task) {
    auto* timer = new QTimer(&context);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, &context, [timer, task = std::move(task)] {
        timer->deleteLater();
        task();
    });
    timer->start(delay);
}

}  // namespace

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
    if (!context) {
        return;
    }
    if (QThread::currentThread() == context->thread()) {
        setTimer(*context, delay, std::move(task));
        return;
    }
    // Timers are the main thread's: what is left of the delay starts there.
    const QDeadlineTimer due(delay, Qt::PreciseTimer);
    auto later = [&receiver = *context, due, task = std::move(task)]() mutable {
        setTimer(receiver, std::chrono::milliseconds(due.remainingTime()), std::move(task));
    };
    QMetaObject::invokeMethod(context.get(), std::move(later), Qt::QueuedConnection);
}

void QtMainQueue::close() {
    std::unique_ptr<QObject> closed;
    const std::lock_guard lock(mutex);
    closed.swap(context);
}

}  // namespace bonkora
