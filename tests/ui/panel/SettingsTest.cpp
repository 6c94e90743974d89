#include <sys/wait.h>
#include <unistd.h>

#include <QWheelEvent>
#include <algorithm>
#include <csignal>
#include <limits>

#include "tests/support/Panel.h"
#include "ui/panel/SettingsSection.h"

using bonkora::StepSlider;
using bonkora::test::Panel;
using namespace std::chrono_literals;

namespace {

// Where the middle of the thumb stands for a value.
QPoint thumbAt(const StepSlider& slider, double value) {
    constexpr int thumb = 16;
    const auto& range = slider.values();
    const double share = (value - range.lowest()) / (range.highest() - range.lowest());
    return {thumb / 2 + static_cast<int>(std::lround((slider.width() - thumb) * share)),
            slider.height() / 2};
}

void drag(StepSlider* slider, double from, double to) {
    QTest::mousePress(slider, Qt::LeftButton, {}, thumbAt(*slider, from));
    QTest::mouseMove(slider, thumbAt(*slider, (from + to) / 2));
    QTest::mouseMove(slider, thumbAt(*slider, to));
}

void release(StepSlider* slider, double at) {
    QTest::mouseRelease(slider, Qt::LeftButton, {}, thumbAt(*slider, at));
    Panel::settle();
}

}  // namespace

class SettingsTest final : public QObject {
    Q_OBJECT

  private slots:
    void aFreshControllerShowsItsDefaults() {
        Panel panel;
        panel.open();
        QVERIFY(panel.toggle("Volume scales with force")->isOn());
        QVERIFY(!panel.toggle("Fast detection")->isOn());
        QVERIFY(panel.label("0.050"));
        QVERIFY(panel.label("750ms"));
        for (const char* text : {"Settings", "Sensitivity", "Cooldown", "🦋 Butterfly",
                                 "💪 Full force", "⚡ Rapid-fire", "🎭 Dramatic pause"}) {
            QVERIFY2(panel.label(text), text);
        }
        QCOMPARE(panel.toggle("Volume scales with force")->accessibleDescription(),
                 "Gentle tap = whisper. Full slap = max.");
        QCOMPARE(panel.toggle("Fast detection")->accessibleDescription(),
                 "Shorter cooldown, higher sensitivity.");
    }

    void draggingTheSensitivityWritesOnceOnReleaseAndRestartsOnce() {
        Panel panel;
        panel.open();
        panel.startDetector();
        StepSlider* slider = panel.slider("Sensitivity");
        int announcements = 0;
        const auto subscription = panel.controller->objectWillChange.sink([&] { ++announcements; });
        drag(slider, 0.05, 0.2);
        QCOMPARE(announcements, 0);
        QVERIFY(panel.label("0.200"));  // the text follows, the controller does not
        QCOMPARE(panel.controller->minAmplitude.get(), 0.05);
        release(slider, 0.2);
        QCOMPARE(panel.controller->minAmplitude.get(), 0.2);
        QCOMPARE(announcements, 1);
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{2});
        panel.pass(5000ms);
        QCOMPARE(panel.launches(), std::size_t{2});
    }

    void releasingAtTheSameValueWritesAndRestartsAllTheSame() {
        Panel panel;
        panel.open();
        panel.startDetector();
        int announcements = 0;
        const auto subscription = panel.controller->objectWillChange.sink([&] { ++announcements; });
        drag(panel.slider("Cooldown"), 750, 750);
        release(panel.slider("Cooldown"), 750);
        QCOMPARE(announcements, 1);
        QCOMPARE(panel.controller->cooldownMs.get(), 750);
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{2});

        announcements = 0;
        drag(panel.slider("Sensitivity"), 0.05, 0.05);
        release(panel.slider("Sensitivity"), 0.05);
        QCOMPARE(announcements, 1);
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{3});
    }

    // Each restart says once that it has stopped: a second in the same breath would say it again.
    void everyCommittedChangeRestartsExactlyOnce() {
        Panel panel;
        panel.open();
        const auto stopsOf = [&](const auto& change) {
            panel.controller->isRunning ? void() : panel.controller->start();
            panel.system.console->take();
            change();
            panel.pass(1000ms);
            const auto lines = panel.system.console->take();
            return static_cast<int>(std::count(lines.begin(), lines.end(), "⏹ Spank stopped"));
        };
        QCOMPARE(stopsOf([&] { panel.click(panel.toggle("Fast detection")); }), 1);
        QCOMPARE(stopsOf([&] { panel.click(panel.toggle("Volume scales with force")); }), 1);
        QCOMPARE(stopsOf([&] {
                     StepSlider* slider = panel.slider("Sensitivity");
                     panel.clickAt(slider, thumbAt(*slider, 0.3));
                 }),
                 1);
        QCOMPARE(stopsOf([&] {
                     StepSlider* slider = panel.slider("Cooldown");
                     panel.clickAt(slider, thumbAt(*slider, 300));
                 }),
                 1);
        QCOMPARE(panel.launches(), std::size_t{5});
    }

    void escapeInMidDragTakesTheDragBackAndWritesNothing() {
        Panel panel;
        panel.open();
        panel.startDetector();
        StepSlider* slider = panel.slider("Cooldown");
        drag(slider, 750, 2000);
        panel.key(Qt::Key_Escape);
        QVERIFY(panel.label("750ms"));
        release(slider, 2000);
        panel.pass(5000ms);
        QVERIFY(panel.label("750ms"));
        QCOMPARE(panel.controller->cooldownMs.get(), 750);
        QCOMPARE(panel.launches(), std::size_t{1});
    }

    void afterADragTheWheelIsLeftToThePanel() {
        Panel panel;
        panel.open();
        StepSlider* slider = panel.slider("Cooldown");
        drag(slider, 750, 2000);
        release(slider, 2000);
        const QPointF middle = slider->rect().center();
        QWheelEvent turn(middle, slider->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, {},
                         Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(slider, &turn);
        QVERIFY(!turn.isAccepted());
        QTest::qWait(600);
        QCOMPARE(panel.controller->cooldownMs.get(), 2000);
    }

    void theSwitchesThumbSlidesWhenItIsFlippedAndStandsWhenThePanelOpens() {
        Panel panel;
        panel.controller->fastMode = true;
        panel.open();
        bonkora::ToggleRow* fast = panel.toggle("Fast detection");
        QCOMPARE(fast->thumbPosition(), 1.0);
        panel.click(fast);
        QVERIFY(!fast->isOn());
        QVERIFY(fast->thumbPosition() > 0.0);
        QTRY_COMPARE(fast->thumbPosition(), 0.0);
        QCOMPARE(fast->findChild<QVariantAnimation*>()->duration(), 200);
        panel.controller->fastMode = true;  // not by the user: at once
        panel.settle();
        QCOMPARE(fast->thumbPosition(), 1.0);
    }

    void aValueHoweverLongMovesNothingElse() {
        Panel panel;
        panel.controller->minAmplitude = 1e300;
        panel.open();
        const QWidget* toggle = panel.toggle("Fast detection");
        QCOMPARE(toggle->mapTo(panel.view.get(), QPoint(toggle->width(), 0)).x(), 340 - 14 - 10);
        QCOMPARE(panel.slider("Sensitivity")->width(), 340 - 2 * (14 + 10));
    }

    void aValueBetweenTheStepsIsWrittenBackUnchanged() {
        Panel panel;
        panel.controller->minAmplitude = 0.1234;
        panel.open();
        QVERIFY(panel.label("0.123"));
        drag(panel.slider("Sensitivity"), 0.125, 0.125);
        release(panel.slider("Sensitivity"), 0.125);
        QCOMPARE(panel.controller->minAmplitude.get(), 0.1234);
    }

    void whileStoppedNothingRestarts() {
        Panel panel;
        panel.open();
        drag(panel.slider("Sensitivity"), 0.05, 0.3);
        release(panel.slider("Sensitivity"), 0.3);
        drag(panel.slider("Cooldown"), 750, 2000);
        release(panel.slider("Cooldown"), 2000);
        panel.click(panel.toggle("Volume scales with force"));
        panel.click(panel.toggle("Fast detection"));
        panel.pass(5000ms);
        QCOMPARE(panel.launches(), std::size_t{0});
        QCOMPARE(panel.controller->minAmplitude.get(), 0.3);
        QCOMPARE(panel.controller->cooldownMs.get(), 2000);
        QVERIFY(!panel.controller->volumeScaling);
        QVERIFY(panel.controller->fastMode);
    }

    void theEndsShowTheBounds() {
        Panel panel;
        panel.open();
        drag(panel.slider("Cooldown"), 750, -2000);
        QVERIFY(panel.label("100ms"));
        release(panel.slider("Cooldown"), -2000);
        drag(panel.slider("Cooldown"), 100, 9000);
        QVERIFY(panel.label("3000ms"));
        release(panel.slider("Cooldown"), 9000);
        drag(panel.slider("Sensitivity"), 0.05, -1);
        QVERIFY(panel.label("0.010"));
        release(panel.slider("Sensitivity"), -1);
        drag(panel.slider("Sensitivity"), 0.01, 2);
        QVERIFY(panel.label("0.500"));
        release(panel.slider("Sensitivity"), 2);
        QCOMPARE(panel.controller->cooldownMs.get(), 3000);
        QCOMPARE(panel.controller->minAmplitude.get(), 0.5);
    }

    void aClickOnTheTrackIsADrag() {
        Panel panel;
        panel.open();
        panel.startDetector();
        StepSlider* slider = panel.slider("Cooldown");
        panel.clickAt(slider, thumbAt(*slider, 2500));
        QCOMPARE(panel.controller->cooldownMs.get(), 2500);
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{2});
    }

    void flippingFastDetectionWhileRunningWritesAndRestartsOnce() {
        Panel panel;
        panel.open();
        panel.startDetector();
        panel.click(panel.toggle("Fast detection"));
        QVERIFY(panel.controller->fastMode);
        QVERIFY(panel.toggle("Fast detection")->isOn());
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{2});
        panel.pass(5000ms);
        QCOMPARE(panel.launches(), std::size_t{2});
    }

    void theTogglesAlwaysShowTheController() {
        Panel panel;
        panel.open();
        panel.controller->fastMode = true;
        panel.controller->volumeScaling = false;
        panel.settle();
        QVERIFY(panel.toggle("Fast detection")->isOn());
        QVERIFY(!panel.toggle("Volume scales with force")->isOn());
    }

    void theSlidersShowTheControllerOnlyWhenThePanelOpens() {
        Panel panel;
        panel.controller->cooldownMs = 1200;
        panel.open();
        QVERIFY(panel.label("1200ms"));
        QCOMPARE(panel.slider("Cooldown")->value(), 1200.0);
        panel.controller->cooldownMs = 300;
        panel.controller->minAmplitude = 0.4;
        panel.settle();
        QVERIFY(panel.label("1200ms"));
        QVERIFY(panel.label("0.050"));
        panel.close();
        panel.open();
        QVERIFY(panel.label("300ms"));
        QVERIFY(panel.label("0.400"));
    }

    void aPanelClosedInMidDragWritesNothing() {
        Panel panel;
        panel.open();
        panel.startDetector();
        drag(panel.slider("Cooldown"), 750, 2000);
        panel.view->hide();
        panel.close();
        panel.pass(5000ms);
        QCOMPARE(panel.controller->cooldownMs.get(), 750);
        QCOMPARE(panel.launches(), std::size_t{1});
    }

    void theNextStartTakesTheValues() {
        Panel panel;
        panel.open();
        StepSlider* slider = panel.slider("Sensitivity");
        panel.clickAt(slider, thumbAt(*slider, 0.305));
        panel.click(panel.button("Start"));
        QVERIFY(panel.controller->isRunning);
        QCOMPARE(panel.controller->minAmplitude.get(), 0.305);
    }

    void millisecondsAreTruncatedTowardZero() {
        QCOMPARE(bonkora::SettingsSection::wholeMilliseconds(749.99), 749);
        QCOMPARE(bonkora::SettingsSection::wholeMilliseconds(-1.5), -1);
        QCOMPARE(bonkora::SettingsSection::wholeMilliseconds(-9223372036854775808.0),
                 std::numeric_limits<std::int64_t>::min());
    }

    void aCooldownThatIsNoWholeNumberOfMillisecondsIsAFatalError_data() {
        QTest::addColumn<double>("milliseconds");
        QTest::addRow("two to the power of 63") << 9223372036854775808.0;
        QTest::addRow("below the least") << -9223372036854777856.0;
        QTest::addRow("infinite") << std::numeric_limits<double>::infinity();
        QTest::addRow("no number") << std::numeric_limits<double>::quiet_NaN();
    }
    void aCooldownThatIsNoWholeNumberOfMillisecondsIsAFatalError() {
        QFETCH(double, milliseconds);
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            for (const int number : {SIGABRT, SIGSEGV}) {
                ::signal(number, SIG_DFL);
            }
            ::dup2(ends[1], STDERR_FILENO);
            bonkora::SettingsSection::wholeMilliseconds(milliseconds);
            ::_exit(0);
        }
        ::close(ends[1]);
        char text[200] = {};
        QVERIFY(::read(ends[0], text, sizeof text - 1) > 0);
        ::close(ends[0]);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
        QCOMPARE(text, "Fatal error: a cooldown that is no whole number of milliseconds\n");
    }
};

QTEST_MAIN(SettingsTest)
#include "SettingsTest.moc"
