#include "tests/support/Panel.h"

using bonkora::Mode;
using bonkora::test::Panel;
using namespace std::chrono_literals;

namespace {

// What a person would call the focused control.
QString focused(const Panel& panel) {
    QWidget* widget = QApplication::focusWidget();
    if (widget == nullptr || widget == panel.view.get()) {
        return {};
    }
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        return button->text();
    }
    if (auto* field = qobject_cast<QLineEdit*>(widget)) {
        return field->placeholderText();
    }
    return widget->accessibleName();
}

}  // namespace

class KeyboardTest final : public QObject {
    Q_OBJECT

  private slots:
    void nothingHasTheFocusWhenThePanelOpens() {
        Panel panel;
        panel.open();
        QCOMPARE(focused(panel), QString());
    }

    void tabReachesEveryControlInReadingOrderAndComesRound() {
        Panel panel;
        panel.controller->switchMode(Mode::custom);
        panel.open();
        const QStringList order{"Start",          "Pain",
                                "Sexy",           "Halo",
                                "Custom",         "Path to MP3 folder...",
                                "Browse",         "Sensitivity",
                                "Cooldown",       "Volume scales with force",
                                "Fast detection", "Quit"};
        QStringList reached;
        for (qsizetype step = 0; step < order.size(); ++step) {
            panel.key(Qt::Key_Tab);
            reached << focused(panel);
        }
        QCOMPARE(reached, order);
        panel.key(Qt::Key_Tab);
        QCOMPARE(focused(panel), "Start");
        panel.key(Qt::Key_Backtab);
        QCOMPARE(focused(panel), "Quit");
    }

    void theFocusedControlIsScrolledIntoSight() {
        Panel panel;
        panel.open();
        QWidget* last = panel.toggle("Fast detection");
        const auto isInSight = [&] {
            const QRect box(last->mapTo(panel.view.get(), QPoint(0, 0)), last->size());
            return box.top() > 46 && box.bottom() < 520 - 30;
        };
        QVERIFY(!isInSight());
        last->setFocus(Qt::TabFocusReason);
        panel.settle();
        QVERIFY(isInSight());
    }

    void keysScrollAsLongAsNoControlHasTheFocus() {
        Panel panel;
        panel.open();
        QWidget* row = panel.row("Pain");
        const auto top = [&] { return row->mapTo(panel.view.get(), QPoint(0, 0)).y(); };
        const int before = top();
        panel.key(Qt::Key_PageDown);
        QVERIFY(top() < before);
        panel.key(Qt::Key_Home);
        QCOMPARE(top(), before);
        panel.key(Qt::Key_Escape);  // of no use to the content: left to the window
        QCOMPARE(top(), before);
    }

    void theRingShowsForTheKeyboardAndNotForTheMouse() {
        Panel panel;
        panel.open();
        QWidget* start = panel.button("Start");
        const QImage plain = start->grab().toImage();
        const QImage plainRow = panel.row("Pain")->grab().toImage();
        panel.key(Qt::Key_Tab);
        QCOMPARE(focused(panel), "Start");
        QVERIFY(start->grab().toImage() != plain);
        panel.click(panel.row("Pain"));
        QCOMPARE(focused(panel), "Start");  // a click leaves the focus where it is
        QVERIFY(panel.row("Pain")->grab().toImage() == plainRow);
        panel.key(Qt::Key_Tab);
        QCOMPARE(focused(panel), "Pain");
        QCOMPARE(start->grab().toImage(), plain);
        QVERIFY(panel.row("Pain")->grab().toImage() != plainRow);
    }

    void spaceAndEnterPress() {
        Panel panel;
        panel.open();
        panel.key(Qt::Key_Tab);
        panel.key(Qt::Key_Space);
        QVERIFY(panel.controller->isRunning);
        panel.key(Qt::Key_Return);
        panel.pass(500ms);
        QVERIFY(!panel.controller->isRunning);
        panel.key(Qt::Key_Enter);
        QVERIFY(panel.controller->isRunning);
    }

    void arrowsMoveTheFocusAmongTheModesAndSpaceTaps() {
        Panel panel;
        panel.open();
        panel.row("Pain")->setFocus(Qt::TabFocusReason);
        panel.key(Qt::Key_Up);
        QCOMPARE(focused(panel), "Pain");
        panel.key(Qt::Key_Down);
        panel.key(Qt::Key_Right);
        QCOMPARE(focused(panel), "Halo");
        panel.key(Qt::Key_Left);
        QCOMPARE(focused(panel), "Sexy");
        QCOMPARE(panel.controller->currentMode.get(), Mode::pain);
        panel.key(Qt::Key_Space);
        QCOMPARE(panel.controller->currentMode.get(), Mode::sexy);
        panel.key(Qt::Key_Down);
        panel.key(Qt::Key_Down);
        panel.key(Qt::Key_Down);
        QCOMPARE(focused(panel), "Custom");
    }

    void aKeyOnASliderChangesTheControllerWhenItIsReleased() {
        Panel panel;
        panel.open();
        panel.startDetector();
        panel.slider("Cooldown")->setFocus(Qt::TabFocusReason);
        QTest::keyPress(panel.slider("Cooldown"), Qt::Key_Right);
        panel.settle();
        QVERIFY(panel.label("800ms"));
        QCOMPARE(panel.controller->cooldownMs.get(), 750);
        QTest::keyRelease(panel.slider("Cooldown"), Qt::Key_Right);
        QCOMPARE(panel.controller->cooldownMs.get(), 800);
        panel.pass(1000ms);
        QCOMPARE(panel.launches(), std::size_t{2});
    }
};

QTEST_MAIN(KeyboardTest)
#include "KeyboardTest.moc"
