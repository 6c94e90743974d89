#include <limits>

#include "tests/support/Panel.h"

using bonkora::Mode;
using bonkora::test::Panel;
using namespace std::chrono_literals;

class StatsAndFooterTest final : public QObject {
    Q_OBJECT

  private slots:
    void aFreshSystemShowsTwoZeros() {
        Panel panel;
        panel.open();
        QVERIFY(panel.label("Lifetime slaps"));
        QVERIFY(panel.label("Session"));
        QVERIFY(panel.label("Mode"));
        const auto labels = panel.all<bonkora::TextLabel>();
        QCOMPARE(std::count_if(labels.begin(), labels.end(),
                               [](bonkora::TextLabel* label) { return label->text() == "0"; }),
                 2);
    }

    void tenSlapsMoveTheSessionAndNotTheLifetime() {
        Panel panel;
        panel.store("[General]\nslapCounterTotal=1284\n");
        panel.open();
        panel.startDetector();
        for (int slap = 0; slap < 10; ++slap) {
            panel.print("{\"type\":\"slap\",\"amplitude\":0.3}\n");
        }
        QVERIFY(panel.label("10"));
        QVERIFY(panel.label("1284"));
        panel.click(panel.button("Quit"));
        panel.pass(1000ms);
        QCOMPARE(bonkora::test::readFile(panel.defaultsFile),
                 std::string("[General]\nslapCounterTotal=1284\n"));
    }

    void theModeShowsItsSymbolAtOnce_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("pain") << "Pain" << QStringLiteral("\U0001F62B");
        QTest::newRow("sexy") << "Sexy" << QStringLiteral("\U0001F48B");
        QTest::newRow("halo") << "Halo" << QStringLiteral("\u2694\uFE0F");
        QTest::newRow("custom") << "Custom" << QStringLiteral("\U0001F3B5");
    }
    void theModeShowsItsSymbolAtOnce() {
        QFETCH(QString, title);
        QFETCH(QString, symbol);
        Panel panel;
        panel.open();
        panel.click(panel.row(title));
        QVERIFY(panel.label(symbol));
    }

    void countsAreShownInPlainDigits() {
        Panel panel;
        panel.store("[General]\nslapCounterTotal=-12345678901\n");
        panel.controller->slapCount = 1234567;
        panel.open();
        QVERIFY(panel.label("1234567"));
        QVERIFY(panel.label("-12345678901"));
    }

    void countsThatLeaveNoRoomForEachOtherGiveWayAndStayInsideTheCard() {
        Panel panel;
        panel.store("[General]\nslapCounterTotal=-9223372036854775808\n");
        panel.controller->slapCount = std::numeric_limits<std::int64_t>::max();
        panel.open();
        const auto* mode = panel.label("😫");
        QCOMPARE(mode->mapTo(panel.view.get(), QPoint(mode->width(), 0)).x(), 340 - 14 - 10);
        for (const char* count : {"-9223372036854775808", "9223372036854775807"}) {
            const auto* label = panel.label(count);
            QVERIFY2(label, count);
            QCOMPARE(label->toolTip(), count);
            const int left = label->mapTo(panel.view.get(), QPoint(0, 0)).x();
            QVERIFY(left >= 14 + 10 && left + label->width() <= 340 - 14 - 10);
        }
        QCOMPARE(panel.label("Session")->sizeHint(), panel.label("Session")->size());
    }

    void aTotalStoredByAnotherProgramShowsWithinASecond() {
        Panel panel;
        panel.open();
        panel.store("[General]\nslapCounterTotal=77\n");
        QTRY_VERIFY_WITH_TIMEOUT(panel.label("77"), 1000);
    }

    void quitWhileStoppedEndsTheApplicationThreeTenthsOfASecondLater() {
        Panel panel;
        panel.open();
        panel.click(panel.button("Quit"));
        panel.pass(299ms);
        QCOMPARE(panel.terminations, 0);
        panel.pass(1ms);
        QCOMPARE(panel.terminations, 1);
        QCOMPARE(panel.launches(), std::size_t{0});
    }

    void quitWhileRunningStopsFirstAndEndsBeforeTheTerminationRequest() {
        Panel panel;
        panel.open();
        panel.startDetector();
        panel.click(panel.button("Quit"));
        panel.pass(300ms);
        QCOMPARE(panel.terminations, 1);
        QCOMPARE(panel.system.processes->last().terminations, 0);
        panel.pass(200ms);  // had the application lived on, stop() would have done its work
        QCOMPARE(panel.system.processes->last().terminations, 1);
    }

    void quitEndsTheApplicationAlsoWhenThePanelClosesInBetween() {
        Panel panel;
        panel.open();
        panel.click(panel.button("Quit"));
        panel.close();
        panel.pass(300ms);
        QCOMPARE(panel.terminations, 1);
    }

    void theFooterNamesTheDetector() {
        Panel panel;
        panel.open();
        QVERIFY(panel.label("Powered by spank"));
    }
};

QTEST_MAIN(StatsAndFooterTest)
#include "StatsAndFooterTest.moc"
