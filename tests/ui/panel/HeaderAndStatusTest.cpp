#include <limits>

#include "tests/support/Panel.h"
#include "ui/controls/TextLabel.h"
#include "ui/drawing/Colors.h"

using bonkora::test::Panel;

namespace {

// How often what it is the event filter of has been painted.
struct PaintCount final : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

}  // namespace

class HeaderAndStatusTest final : public QObject {
    Q_OBJECT

  private slots:
    void aFreshControllerShowsStartAGrayDotReadyAndNoImpact() {
        Panel panel;
        panel.open();
        QCOMPARE(panel.button("Start")->grab().toImage().pixelColor(6, 12).rgb(),
                 bonkora::accentColor.rgb());
        QCOMPARE(panel.colorInTheMiddle(panel.dot()), QColor(0x8E, 0x8E, 0x93));
        QVERIFY(panel.label("Ready"));
        QVERIFY(!panel.label("Last impact:"));
        QVERIFY(!panel.button("Stop"));
    }

    void afterALaunchTheButtonReadsStopOnRedAndTheDotHasTheAccent() {
        Panel panel;
        panel.open();
        panel.click(panel.button("Start"));
        QVERIFY(panel.controller->isRunning);
        QVERIFY(!panel.button("Start"));
        QCOMPARE(panel.button("Stop")->grab().toImage().pixelColor(6, 12), bonkora::runningColor);
        QCOMPARE(panel.colorInTheMiddle(panel.dot()).rgb(), bonkora::accentColor.rgb());
        QVERIFY(panel.label("Listening for slaps..."));
    }

    void pressingStopStopsAndTheButtonFlipsHalfASecondLater() {
        Panel panel;
        panel.open();
        panel.startDetector();
        panel.click(panel.button("Stop"));
        QVERIFY(panel.button("Stop"));
        panel.pass(std::chrono::milliseconds(499));
        QVERIFY(panel.button("Stop"));
        panel.pass(std::chrono::milliseconds(1));
        QVERIFY(panel.button("Start"));
        QVERIFY(panel.label("Stopped"));
        QCOMPARE(panel.system.processes->last().terminations, 1);
    }

    void theButtonIsNeverDisabledAndAsksTheStateAtThePress() {
        Panel panel;
        panel.open();
        panel.controller->start();  // not drawn yet: the button still reads "Start"
        QVERIFY(panel.button("Start")->isEnabled());
        panel.click(panel.button("Start"));
        panel.pass(std::chrono::milliseconds(500));
        QCOMPARE(panel.system.processes->last().terminations, 1);
        QCOMPARE(panel.launches(), std::size_t{1});
    }

    void theImpactRowShowsWithTheFirstAmplitudeAboveZero_data() {
        QTest::addColumn<double>("amplitude");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << 0.0 << QString();
        QTest::newRow("smaller than shown") << 0.00004 << "0.0000";
        QTest::newRow("a quarter") << 0.25 << "0.2500";
        QTest::newRow("rounded") << 0.23456 << "0.2346";
        QTest::newRow("negative") << -0.5 << QString();
    }
    void theImpactRowShowsWithTheFirstAmplitudeAboveZero() {
        QFETCH(double, amplitude);
        QFETCH(QString, text);
        Panel panel;
        panel.open();
        panel.controller->lastAmplitude = amplitude;
        panel.settle();
        QCOMPARE(panel.label("Last impact:") != nullptr, !text.isEmpty());
        if (!text.isEmpty()) {
            QVERIFY(panel.label(text));
        }
    }

    void aSlapShowsItsAmplitudeAndLeavesTheStatusAlone() {
        Panel panel;
        panel.open();
        panel.startDetector();
        panel.print("{\"type\":\"slap\",\"amplitude\":0.2345}\n");
        QVERIFY(panel.label("0.2345"));
        QVERIFY(panel.label("Listening for slaps..."));
    }

    void aLongMessageTakesTheLinesItNeedsAndTheDotStaysAtTheLeft() {
        Panel panel;
        panel.open();
        const int oneLine = panel.label("Ready")->height();
        const QString message =
            "Error: " + QString("no microphone and no accelerometer ").repeated(6);
        panel.controller->statusMessage = message.toStdString();
        panel.settle();
        bonkora::TextLabel* status = panel.label(message);
        QVERIFY(status);
        QVERIFY(status->height() >= 5 * oneLine);
        QCOMPARE(status->height(), status->heightForWidth(status->width()));
        QCOMPARE(panel.dot()->x(), 10);
        QVERIFY(panel.dot()->geometry().right() < status->geometry().left());
    }

    void aLongWordIsBrokenRatherThanCut() {
        Panel panel;
        panel.open();
        panel.controller->statusMessage = std::string(200, 'x');
        panel.settle();
        bonkora::TextLabel* status = panel.label(QString(200, 'x'));
        QVERIFY(status->height() >= 3 * 13);
    }

    void theStatusIsShownAsItIsAndNeverAsMarkup() {
        Panel panel;
        panel.open();
        panel.controller->statusMessage = "<b>bold</b> & 1 < 2\n%1";
        panel.settle();
        bonkora::TextLabel* status = panel.label("<b>bold</b> & 1 < 2\n%1");
        QVERIFY(status);
        QCOMPARE(status->height(), 2 * 13);
    }

    void whateverALineShowsItHasTheRoomOfALineMadeForIt() {
        using namespace bonkora;
        for (const TextStyle& style :
             {textStyle::title3.monospaced().weighing(QFont::DemiBold), textStyle::title2}) {
            TextLabel line(style, colorRole::primary, "100");
            for (const char* text : {"111", "222", "333", "444", "555", "666", "777", "888", "999",
                                     "9.9", "1000", "ii", "WW", "日本語", "äöü", "👋👋", "", "7"}) {
                line.display(text);
                QCOMPARE(line.sizeHint(), TextLabel(style, colorRole::primary, text).sizeHint());
            }
        }
    }

    void theHandStandsAboveTheEdgeOfTheCards() {
        Panel panel;
        panel.open();
        const QImage header = panel.view->grab({0, 0, 340, 45}).toImage();
        const auto isGreen = [&](int x) {
            for (int y = 0; y < header.height(); ++y) {
                const QColor color = header.pixelColor(x, y);
                if (color.green() > color.red() + 40) {
                    return true;
                }
            }
            return false;
        };
        int left = 0;
        while (left < header.width() && !isGreen(left)) {
            ++left;
        }
        const QWidget* card = panel.dot()->parentWidget();
        const int edge = card->mapTo(panel.view.get(), QPoint(0, 0)).x();
        const auto scale = header.devicePixelRatio();
        QVERIFY2(std::abs(left - edge * scale) <= scale, qPrintable(QString::number(left)));
    }

    void aNumberHoweverLongMovesNothingElse_data() {
        QTest::addColumn<double>("amplitude");
        QTest::newRow("ten to the power of 40") << 1e40;
        QTest::newRow("the largest") << std::numeric_limits<double>::max();
    }
    void aNumberHoweverLongMovesNothingElse() {
        QFETCH(double, amplitude);
        Panel panel;
        panel.controller->lastAmplitude = 0.5;
        panel.open();
        bonkora::TextLabel* number = panel.label("0.5000");
        const auto places = [&] {
            QList<QRect> others;
            for (QWidget* widget : panel.all<QWidget>()) {
                if (widget != number) {
                    others << QRect(widget->mapTo(panel.view.get(), QPoint(0, 0)), widget->size());
                }
            }
            return others;
        };
        QCOMPARE(number->toolTip(), QString());
        const auto before = places();
        panel.controller->lastAmplitude = amplitude;
        panel.settle();
        QCOMPARE(places(), before);
        const QString whole = QString::asprintf("%.4f", amplitude);
        QCOMPARE(number->text(), whole);
        QCOMPARE(number->toolTip().remove('\n'), whole);
        QCOMPARE(QAccessible::queryAccessibleInterface(number)->text(QAccessible::Name), whole);
        QVERIFY(number->geometry().right() < number->parentWidget()->width());
    }

    void openingStartsNothing() {
        Panel panel;
        panel.open();
        panel.pass(std::chrono::seconds(5));
        QCOMPARE(panel.launches(), std::size_t{0});
    }

    void anyNumberOfAnnouncementsInATurnRedrawsOnce() {
        Panel panel;
        panel.controller->statusMessage = "1000";
        panel.open();
        bonkora::TextLabel* status = panel.label("1000");
        QVERIFY(status);
        PaintCount paints;
        status->installEventFilter(&paints);
        for (int count = 1001; count <= 2000; ++count) {
            panel.controller->statusMessage = std::to_string(count);
        }
        QCOMPARE(status->text(), "1000");  // nothing is drawn inside the announcement
        panel.settle();
        QCOMPARE(status->text(), "2000");
        QCOMPARE(paints.count, 1);
    }

    void darkAndLightFollowTheDesktopWhileThePanelIsOpen() {
        Panel panel;
        panel.open();
        QCOMPARE(panel.view->palette().color(bonkora::colorRole::window), QColor(0xEC, 0xEC, 0xEC));
        panel.appearance.setDark(true);
        panel.settle();
        QCOMPARE(panel.view->palette().color(bonkora::colorRole::window), QColor(0x32, 0x32, 0x32));
        QCOMPARE(panel.colorInTheMiddle(panel.dot()), QColor(0x98, 0x98, 0x9D));
    }
};

QTEST_MAIN(HeaderAndStatusTest)
#include "HeaderAndStatusTest.moc"
