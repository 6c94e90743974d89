#include <algorithm>
#include <cmath>
#include <utility>

#include "tests/support/Panel.h"
#include "ui/controls/FocusRing.h"
#include "ui/drawing/Colors.h"

using bonkora::FocusRing;
using bonkora::FocusTarget;
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

// Whether the one ring that is to be seen stands around the control.
bool ringSurrounds(const Panel& panel, QWidget* control) {
    const auto rings = panel.all<FocusRing>();
    const auto* target = dynamic_cast<FocusTarget*>(control);
    if (rings.size() != 1 || target == nullptr) {
        return false;
    }
    const QRect box =
        target->focusBox()
            .translated(control->mapTo(panel.view.get(), QPoint(0, 0)))
            .adjusted(-FocusRing::reach, -FocusRing::reach, FocusRing::reach, FocusRing::reach)
            .toAlignedRect();
    const FocusRing* ring = rings.first();
    return QRect(ring->mapTo(panel.view.get(), QPoint(0, 0)), ring->size()) == box;
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
        QVERIFY(panel.all<FocusRing>().isEmpty());
        panel.key(Qt::Key_Tab);
        QCOMPARE(focused(panel), "Start");
        QVERIFY(ringSurrounds(panel, panel.button("Start")));
        panel.click(panel.row("Pain"));
        QCOMPARE(focused(panel), "Start");  // a click leaves the focus where it is
        QVERIFY(ringSurrounds(panel, panel.button("Start")));
        panel.key(Qt::Key_Tab);
        QCOMPARE(focused(panel), "Pain");
        QVERIFY(ringSurrounds(panel, panel.row("Pain")));
        panel.row("Pain")->clearFocus();
        panel.settle();
        QVERIFY(panel.all<FocusRing>().isEmpty());
    }

    void theRingFollowsItsControlAndASlidersThumb() {
        Panel panel;
        panel.open();
        panel.slider("Cooldown")->setFocus(Qt::TabFocusReason);
        panel.settle();
        for (const auto key : {Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown}) {
            panel.key(key);
            QVERIFY(ringSurrounds(panel, panel.slider("Cooldown")));
        }
        panel.controller->statusMessage = std::string(300, 'x');  // moves what stands below it
        panel.settle();
        QVERIFY(ringSurrounds(panel, panel.slider("Cooldown")));
    }

    // Beside every control there is room for the ring, it is whole, it hides nothing of the
    // control, and it stands out from what it stands on.
    void theRingHasRoomAroundEveryControlAndCanBeSeen_data() {
        QTest::addColumn<bool>("isDark");
        QTest::addRow("light") << false;
        QTest::addRow("dark") << true;
    }
    void theRingHasRoomAroundEveryControlAndCanBeSeen() {
        QFETCH(bool, isDark);
        Panel panel;
        panel.appearance.setDark(isDark);
        panel.controller->switchMode(Mode::custom);
        panel.open();
        for (int step = 0; step < 12; ++step) {
            panel.key(Qt::Key_Tab);
            panel.field()->deselect();
            const QString name = focused(panel);
            QWidget* control = QApplication::focusWidget();
            const auto* target = dynamic_cast<FocusTarget*>(control);
            QVERIFY(ringSurrounds(panel, control));
            FocusRing* ring = panel.all<FocusRing>().first();
            const QPoint origin = control->mapTo(panel.view.get(), QPoint(0, 0));
            const QRect box = target->focusBox().toRect().translated(origin);
            const QRect around = box.adjusted(-3, -3, 3, 3);
            QVERIFY2(around.left() >= 0 && around.right() < 340, qPrintable(name));

            // The text cursor of the field blinks: it is no part of the comparison.
            const QRect inside = control == panel.field() ? box.adjusted(12, 0, -12, 0) : box;
            const QImage with = panel.view->grab().toImage();
            ring->setVisible(false);
            const QImage without = panel.view->grab().toImage();
            ring->setVisible(true);
            // In the corners the ring comes nearer, where a round control has left them.
            const int corner = static_cast<int>(std::ceil(0.6 * target->focusRadius()));
            for (const QRect& part :
                 {inside.adjusted(corner, 0, -corner, 0), inside.adjusted(0, corner, 0, -corner)}) {
                QVERIFY2(with.copy(part) == without.copy(part), qPrintable(name));
            }

            const QPoint middle = around.center();
            // At each side the outermost pixel of the ring, and the way to the control.
            const std::pair<QPoint, QPoint> sides[] = {
                {QPoint(middle.x(), around.top()), QPoint(0, 1)},
                {QPoint(middle.x(), around.bottom()), QPoint(0, -1)},
                {QPoint(around.left(), middle.y()), QPoint(1, 0)},
                {QPoint(around.right(), middle.y()), QPoint(-1, 0)}};
            for (const auto& [outermost, inwards] : sides) {
                // On what it stands, and beside what: a slider's track among them.
                for (const int outwards : {0, 1}) {
                    double ratio = 1;
                    for (int depth = 0; depth < FocusRing::reach; ++depth) {
                        const QPoint pixel = outermost + depth * inwards;
                        const QPoint other = outwards == 0 ? pixel : outermost - inwards;
                        ratio = std::max(ratio, bonkora::contrastRatio(with.pixelColor(pixel),
                                                                       without.pixelColor(other)));
                    }
                    QVERIFY2(ratio >= 3, qPrintable(QString("%1: %2").arg(name).arg(ratio)));
                }
            }
        }
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
