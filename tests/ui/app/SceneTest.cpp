#include "app/BonkoraApp.h"
#include "tests/support/Panel.h"

using bonkora::BonkoraApp;
using bonkora::test::Panel;

class SceneTest final : public QObject {
    Q_OBJECT

  private slots:
    void theControllerIsMadeByTheFirstBodyAndOnlyThen() {
        Panel panel;
        int made = 0;
        BonkoraApp app([&] {
            ++made;
            return panel.controller;
        });
        QCOMPARE(made, 0);
        const auto scene = app.body();
        const auto again = app.body();
        QCOMPARE(made, 1);
        QCOMPARE(panel.launches(), std::size_t{0});
        QCOMPARE(scene.contentSize, QSize(340, 520));
    }

    void theLabelReadsOffAndWithNothingStoredZeroWhileRunning() {
        Panel panel;
        BonkoraApp app([&] { return panel.controller; });
        const auto scene = app.body();
        QCOMPARE(scene.label().title, "Bonkora OFF");
        QCOMPARE(scene.label().symbol, bonkora::Symbol::handRaisedFill);
        panel.startDetector();
        QCOMPARE(scene.label().title, "Bonkora 0");
    }

    void slapsLeaveTheLabelAndAStoredValueShowsAsStored() {
        Panel panel;
        panel.store("[General]\nslapCounterTotal=1284\n");
        BonkoraApp app([&] { return panel.controller; });
        const auto scene = app.body();
        panel.startDetector();
        panel.print("{\"type\":\"slap\"}\n");
        QCOMPARE(panel.controller->slapCount.get(), 1);
        QCOMPARE(scene.label().title, "Bonkora 1284");
        panel.store("[General]\nslapCounterTotal=-5000\n");
        QTRY_COMPARE_WITH_TIMEOUT(scene.label().title, "Bonkora -5000", 1000);
    }

    void theLabelReadsOffAsSoonAsTheDetectorHasEnded() {
        Panel panel;
        BonkoraApp app([&] { return panel.controller; });
        const auto scene = app.body();
        panel.startDetector();
        panel.system.processes->last().end(1);
        panel.pass(std::chrono::milliseconds(0));
        QCOMPARE(scene.label().title, "Bonkora OFF");
    }

    void theLabelStaysAtOffWhenTheLaunchFails() {
        Panel panel;
        BonkoraApp app([&] { return panel.controller; });
        const auto scene = app.body();
        panel.system.processes->nextFailure =
            bonkora::platform::LaunchError{"NSCocoaErrorDomain", 4, "/x/osascript"};
        panel.controller->start();
        QCOMPARE(panel.launches(), std::size_t{1});
        QCOMPARE(scene.label().title, "Bonkora OFF");
        panel.controller->start();
        QCOMPARE(scene.label().title, "Bonkora 0");
    }

    void openingAndClosingThePanelKeepsTheControllerAndTheCount() {
        Panel panel;
        int made = 0;
        BonkoraApp app([&] {
            ++made;
            return panel.controller;
        });
        const auto scene = app.body();
        panel.startDetector();
        for (int times = 0; times < 5; ++times) {
            panel.print("{\"type\":\"slap\"}\n");  // while closed
            const auto view = scene.content(panel.environment());
            view->show();
            panel.print("{\"type\":\"slap\"}\n");  // while open
        }
        QCOMPARE(made, 1);
        QCOMPARE(panel.controller->slapCount.get(), 10);
        QVERIFY(panel.controller->isRunning);
    }

    void everyAnnouncementIsHeardThroughTheScene() {
        Panel panel;
        BonkoraApp app([&] { return panel.controller; });
        const auto scene = app.body();
        QCOMPARE(scene.observed.size(), std::size_t{2});
        QVERIFY(scene.observed.front() == panel.controller.get());
        int announcements = 0;
        const auto subscription =
            scene.observed.back()->objectWillChange.sink([&] { ++announcements; });
        panel.store("[General]\nslapCounterTotal=12\n");
        QTRY_COMPARE_WITH_TIMEOUT(announcements, 1, 1000);
    }
};

QTEST_MAIN(SceneTest)
#include "SceneTest.moc"
