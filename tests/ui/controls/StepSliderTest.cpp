#include "ui/controls/StepSlider.h"

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using bonkora::SliderRange;
using bonkora::StepSlider;

namespace {

constexpr SliderRange sensitivity{.first = 10, .step = 5, .lastTick = 98, .denominator = 1000};
constexpr SliderRange cooldown{.first = 100, .step = 50, .lastTick = 58};

// A slider in a window with the focus, and what it reported.
struct Stand {
    QWidget window;
    StepSlider slider{cooldown, "Cooldown"};
    StepSlider other{sensitivity, "Sensitivity"};
    QSignalSpy values{&slider, &StepSlider::valueChanged};
    QSignalSpy editing{&slider, &StepSlider::editingChanged};

    Stand() {
        slider.setParent(&window);
        other.setParent(&window);
        window.resize(300, 60);
        slider.setGeometry(0, 0, 300, 20);
        other.setGeometry(0, 30, 300, 20);
        slider.display(750);
        window.show();
        window.activateWindow();
        (void)QTest::qWaitForWindowActive(&window);
    }
    ~Stand() {
        slider.setParent(nullptr);
        other.setParent(nullptr);
    }

    // The window may have given it the focus already, which would be no arrival by the keyboard.
    void focusByKeyboard() {
        slider.clearFocus();
        slider.setFocus(Qt::TabFocusReason);
    }
    int drags() const {
        return static_cast<int>(std::count(editing.begin(), editing.end(), QList<QVariant>{false}));
    }
    void wheel(int angle) {
        const QPointF middle(150, 10);
        QWheelEvent event(middle, slider.mapToGlobal(middle), {}, {0, angle}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&slider, &event);
    }
};

}  // namespace

class StepSliderTest final : public QObject {
    Q_OBJECT

  private slots:
    void everyStepIsTheNearestNumberToItsDecimal() {
        for (int tick = 0; tick <= sensitivity.lastTick; ++tick) {
            const QString decimal = QString("0.%1").arg(10 + 5 * tick, 3, 10, QChar('0'));
            QCOMPARE(sensitivity.value(tick), decimal.toDouble());
            QCOMPARE(sensitivity.nearestTick(sensitivity.value(tick)), tick);
        }
        QCOMPARE(sensitivity.highest(), 0.5);
        QCOMPARE(cooldown.highest(), 3000.0);
    }

    void anyNumberHasANearestStep() {
        QCOMPARE(cooldown.nearestTick(-1e300), 0);
        QCOMPARE(cooldown.nearestTick(1e300), 58);
        QCOMPARE(cooldown.nearestTick(std::numeric_limits<double>::infinity()), 58);
        QCOMPARE(cooldown.nearestTick(std::nan("")), 0);
        QCOMPARE(cooldown.nearestTick(774), 13);
        QCOMPARE(cooldown.nearestTick(776), 14);
    }

    void whatTheProgramShowsIsNoEdit() {
        Stand stand;
        stand.slider.display(1200);
        QCOMPARE(stand.slider.value(), 1200.0);
        QCOMPARE(stand.values.count(), 0);
        QCOMPARE(stand.editing.count(), 0);
    }

    void arrowsMoveOneStepPagesTenHomeAndEndToTheBounds() {
        Stand stand;
        stand.focusByKeyboard();
        const auto after = [&](Qt::Key key) {
            QTest::keyClick(&stand.slider, key);
            return stand.slider.value();
        };
        QCOMPARE(after(Qt::Key_Right), 800.0);
        QCOMPARE(after(Qt::Key_Up), 850.0);
        QCOMPARE(after(Qt::Key_Left), 800.0);
        QCOMPARE(after(Qt::Key_Down), 750.0);
        QCOMPARE(after(Qt::Key_PageUp), 1250.0);
        QCOMPARE(after(Qt::Key_PageDown), 750.0);
        QCOMPARE(after(Qt::Key_End), 3000.0);
        QCOMPARE(after(Qt::Key_Home), 100.0);
        QCOMPARE(stand.drags(), 8);
    }

    void stepsThatChangeNothingAreNoDrag() {
        Stand stand;
        stand.focusByKeyboard();
        stand.slider.display(3000);
        for (const auto key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_End}) {
            QTest::keyClick(&stand.slider, key);
        }
        stand.wheel(120);
        stand.wheel(1200);
        QTest::qWait(600);
        QCOMPARE(stand.editing.count(), 0);
        QCOMPARE(stand.slider.value(), 3000.0);
    }

    void theMouseLeavesTheFocusWhereItIs() {
        Stand stand;
        stand.other.setFocus(Qt::TabFocusReason);
        QTest::mouseClick(&stand.slider, Qt::LeftButton, {}, {200, 10});
        QCOMPARE(stand.drags(), 1);
        QVERIFY(stand.other.hasFocus());
    }

    void theWheelTurnsNothingAfterADragWithTheMouse() {
        Stand stand;
        QTest::mouseClick(&stand.slider, Qt::LeftButton, {}, {200, 10});
        const double value = stand.slider.value();
        stand.wheel(120);
        QCOMPARE(stand.slider.value(), value);
        QCOMPARE(stand.drags(), 1);
        stand.slider.clearFocus();
        stand.slider.setFocus(Qt::OtherFocusReason);  // not by the keyboard
        stand.wheel(120);
        QCOMPARE(stand.slider.value(), value);
    }

    void escapeTakesADragBackAndTheDragNeverEnds() {
        Stand stand;
        QTest::mousePress(&stand.slider, Qt::LeftButton, {}, {200, 10});
        QTest::mouseMove(&stand.slider, {250, 10});
        QVERIFY(stand.slider.value() > 2000);
        QTest::keyClick(&stand.window, Qt::Key_Escape);
        QCOMPARE(stand.slider.value(), 750.0);
        QCOMPARE(stand.values.last(), QList<QVariant>{750.0});
        QTest::mouseMove(&stand.slider, {280, 10});
        QTest::mouseRelease(&stand.slider, Qt::LeftButton, {}, {280, 10});
        QCOMPARE(stand.slider.value(), 750.0);
        QCOMPARE(stand.drags(), 0);

        stand.focusByKeyboard();
        QTest::keyPress(&stand.slider, Qt::Key_Right);
        QTest::keyClick(&stand.slider, Qt::Key_Escape);
        QTest::keyRelease(&stand.slider, Qt::Key_Right);
        QCOMPARE(stand.slider.value(), 750.0);
        QCOMPARE(stand.drags(), 0);
    }

    void withoutADragEscapeIsLeftToOthers() {
        Stand stand;
        stand.focusByKeyboard();
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
        QCoreApplication::sendEvent(&stand.slider, &escape);
        QVERIFY(!escape.isAccepted());
    }

    void aHeldKeyIsOneDragUntilItsRelease() {
        Stand stand;
        stand.focusByKeyboard();
        QTest::keyPress(&stand.slider, Qt::Key_Right);
        for (int repeat = 0; repeat < 5; ++repeat) {
            QKeyEvent up(QEvent::KeyRelease, Qt::Key_Right, {}, {}, true);
            QKeyEvent down(QEvent::KeyPress, Qt::Key_Right, {}, {}, true);
            QCoreApplication::sendEvent(&stand.slider, &up);
            QCoreApplication::sendEvent(&stand.slider, &down);
        }
        QCOMPARE(stand.drags(), 0);
        QCOMPARE(stand.values.count(), 6);
        QTest::keyRelease(&stand.slider, Qt::Key_Right);
        QCOMPARE(stand.drags(), 1);
        QCOMPARE(stand.slider.value(), 1050.0);
    }

    void lossOfTheFocusEndsAHeldKeysDrag() {
        Stand stand;
        stand.focusByKeyboard();
        QTest::keyPress(&stand.slider, Qt::Key_Right);
        stand.other.setFocus(Qt::TabFocusReason);
        QCOMPARE(stand.drags(), 1);
        QTest::keyRelease(&stand.slider, Qt::Key_Right);
        QCOMPARE(stand.drags(), 1);
    }

    void aBurstOfTheWheelIsOneDragEndedByHalfASecondOfQuiet() {
        Stand stand;
        stand.focusByKeyboard();
        for (int turn = 0; turn < 4; ++turn) {
            stand.wheel(120);
        }
        QCOMPARE(stand.slider.value(), 950.0);
        QCOMPARE(stand.drags(), 0);
        QTest::qWait(400);
        QCOMPARE(stand.drags(), 0);
        stand.wheel(-120);
        QTest::qWait(400);
        QCOMPARE(stand.drags(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(stand.drags(), 1, 400);
        QCOMPARE(stand.slider.value(), 900.0);
    }

    void fineTurnsOfTheWheelAddUpToSteps() {
        Stand stand;
        stand.focusByKeyboard();
        for (int turn = 0; turn < 7; ++turn) {
            stand.wheel(30);
        }
        QCOMPARE(stand.slider.value(), 800.0);
    }

    void theWheelPassesASliderWithoutTheFocus() {
        Stand stand;
        stand.other.setFocus(Qt::TabFocusReason);
        stand.wheel(120);
        QCOMPARE(stand.slider.value(), 750.0);
        QCOMPARE(stand.editing.count(), 0);
    }

    void aPressOnTheThumbHoldsItWhereItIsTaken() {
        Stand stand;
        const int thumb = 8 + static_cast<int>(std::lround((300 - 16) * 13 / 58.0));
        QTest::mousePress(&stand.slider, Qt::LeftButton, {}, {thumb + 6, 10});
        QCOMPARE(stand.slider.value(), 750.0);
        QTest::mouseRelease(&stand.slider, Qt::LeftButton, {}, {thumb + 6, 10});
        QCOMPARE(stand.values.count(), 0);
        QCOMPARE(stand.drags(), 1);
    }

    void otherButtonsDragNothing() {
        Stand stand;
        QTest::mouseClick(&stand.slider, Qt::RightButton, {}, {200, 10});
        QCOMPARE(stand.editing.count(), 0);
    }

    void aValueSetFromOutsideIsOneDrag() {
        Stand stand;
        stand.slider.edit(1234);
        QCOMPARE(stand.slider.value(), 1250.0);
        QCOMPARE(stand.editing.count(), 2);
        QCOMPARE(stand.drags(), 1);
    }
};

QTEST_MAIN(StepSliderTest)
#include "StepSliderTest.moc"
