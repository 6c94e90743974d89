#include "app/QtMainQueue.h"

#include <QDeadlineTimer>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <utility>

namespace bonkora {

namespace {

constexpr auto slice = std::chrono::milliseconds(8);

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

// Runs the queue's tasks, for a slice of time in each turn of the event loop. A timer without an
// interval gives that, unlike a posted event: one that is posted meanwhile belongs to the same
// turn.
class QtMainQueue::Turns final : public QObject {
  public:
    explicit Turns(QtMainQueue& theQueue) : queue(theQueue) {
        connect(&turn, &QTimer::timeout, this, &Turns::runSlice);
    }

    void begin() { turn.start(0); }

  private:
    void runSlice() {
        const QPointer<Turns> alive(this);
        const QDeadlineTimer end(slice);
        do {
            const Task task = queue.takeNext();
            if (!task) {
                turn.stop();
                return;
            }
            task();
        } while (alive && !end.hasExpired());
    }

    QtMainQueue& queue;
    QTimer turn;
};

QtMainQueue::QtMainQueue() : context(std::make_unique<Turns>(*this)) {}

QtMainQueue::~QtMainQueue() {
    QtMainQueue::close();
}

void QtMainQueue::async(Task task) {
    const std::lock_guard lock(mutex);
    if (!context) {
        return;
    }
    tasks.push_back(std::move(task));
    if (!isAwake) {
        isAwake = true;
        QMetaObject::invokeMethod(
            context.get(), [turns = context.get()] { turns->begin(); }, Qt::QueuedConnection);
    }
}

QtMainQueue::Task QtMainQueue::takeNext() {
    const std::lock_guard lock(mutex);
    if (tasks.empty()) {
        isAwake = false;
        return nullptr;
    }
    Task task = std::move(tasks.front());
    tasks.pop_front();
    return task;
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
    // Destroyed without the lock: what the tasks hold may submit a task.
    std::unique_ptr<Turns> closed;
    std::deque<Task> dropped;
    const std::lock_guard lock(mutex);
    closed.swap(context);
    dropped.swap(tasks);
}

}  // namespace bonkora
