#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <functional>
#include <thread>

#include "app/QtMainQueue.h"

using bonkora::QtMainQueue;
using namespace std::chrono_literals;

class MainQueueTest final : public QObject {
    Q_OBJECT

  private slots:
    void aTaskRunsInALaterTurnNeverInsideTheCall() {
        QtMainQueue queue;
        bool hasRun = false;
        queue.async([&] { hasRun = true; });
        QVERIFY(!hasRun);
        QTRY_VERIFY(hasRun);
    }

    void tasksRunInTheOrderOfSubmission() {
        QtMainQueue queue;
        std::vector<int> order;
        for (int number = 0; number < 100; ++number) {
            queue.async([&order, number] { order.push_back(number); });
        }
        QTRY_COMPARE(order.size(), std::size_t{100});
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

    void delayedTasksOfOneDueTimeRunInTheOrderOfSubmission() {
        QtMainQueue queue;
        std::vector<int> order;
        for (int number = 0; number < 100; ++number) {
            queue.asyncAfter(50ms, [&order, number] { order.push_back(number); });
        }
        QTRY_COMPARE(order.size(), std::size_t{100});
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

    void aDelayIsNeverShorterAndHardlyLonger() {
        QtMainQueue queue;
        QElapsedTimer time;
        time.start();
        qint64 elapsed = 0;
        queue.asyncAfter(300ms, [&] { elapsed = time.nsecsElapsed(); });
        QTRY_VERIFY(elapsed != 0);
        QVERIFY(elapsed >= 300'000'000);
        QVERIFY2(elapsed < 400'000'000, qPrintable(QString::number(elapsed)));
    }

    void anyThreadMaySubmitAndTheTaskRunsOnTheMainOne() {
        QtMainQueue queue;
        std::vector<std::thread::id> ran;
        std::thread other([&] {
            queue.async([&] { ran.push_back(std::this_thread::get_id()); });
            queue.asyncAfter(10ms, [&] { ran.push_back(std::this_thread::get_id()); });
        });
        QTRY_COMPARE(ran.size(), std::size_t{2});
        other.join();
        QCOMPARE(ran, std::vector<std::thread::id>(2, std::this_thread::get_id()));
    }

    void tasksWithoutEndLeaveTimersAndOtherEventsTheirTurn() {
        QtMainQueue queue;
        const auto work = [] {
            QElapsedTimer time;
            time.start();
            while (time.nsecsElapsed() < 500'000) {
            }
        };
        // Each task brings forth the next, and another thread adds its own without pause.
        std::function<void()> again = [&] {
            work();
            queue.async(again);
        };
        const auto backlog = std::make_shared<bonkora::platform::Backlog>(50);
        std::atomic<bool> isOver = false;
        std::thread other([&] {
            while (!isOver) {
                queue.async([&work, share = backlog->add(1)] { work(); });
            }
        });
        again();
        int events = 0;
        QTimer::singleShot(0, this, [&] { ++events; });
        QElapsedTimer time;
        time.start();
        qint64 elapsed = 0;
        queue.asyncAfter(200ms, [&] {
            elapsed = time.elapsed();
            QMetaObject::invokeMethod(
                this, [&] { ++events; }, Qt::QueuedConnection);
        });
        QTRY_COMPARE_WITH_TIMEOUT(events, 2, 5000);
        isOver = true;
        backlog->close();
        other.join();
        queue.close();
        QVERIFY2(elapsed >= 200 && elapsed < 400, qPrintable(QString::number(elapsed)));
    }

    void aTaskMayCloseTheQueue() {
        QtMainQueue queue;
        int ran = 0;
        queue.async([&] {
            ++ran;
            queue.close();
        });
        queue.async([&] { ++ran; });
        QTRY_COMPARE(ran, 1);
        QTest::qWait(20);
        QCOMPARE(ran, 1);
    }

    void whatComesAfterTheEndOfTheLoopIsDropped() {
        auto queue = std::make_shared<QtMainQueue>();
        bool hasRun = false;
        queue->async([&] { hasRun = true; });
        queue->asyncAfter(1ms, [&] { hasRun = true; });
        queue->close();
        queue->async([&] { hasRun = true; });
        queue->asyncAfter(1ms, [&] { hasRun = true; });
        std::thread last([held = std::move(queue)] { held->async([] {}); });
        last.join();
        QTest::qWait(20);
        QVERIFY(!hasRun);
    }

    void closingReleasesWhatTheTasksHold() {
        QtMainQueue queue;
        const auto held = std::make_shared<int>(1);
        queue.asyncAfter(1h, [held] {});
        queue.async([held] {});
        QCOMPARE(held.use_count(), 3L);
        queue.close();
        QCoreApplication::processEvents();
        QCOMPARE(held.use_count(), 1L);
    }
};

QTEST_GUILESS_MAIN(MainQueueTest)
#include "MainQueueTest.moc"
