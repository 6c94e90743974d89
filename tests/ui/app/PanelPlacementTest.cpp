#include "app/window/PanelPlacement.h"

#include <QTest>

using bonkora::panelPlacement::clickPlace;
using bonkora::panelPlacement::followScreen;
using bonkora::panelPlacement::itemRectangle;
using bonkora::panelPlacement::panelRectangle;
using bonkora::panelPlacement::ScreenPlace;

namespace {

const QRect screen(0, 0, 1280, 800);
const QSize panelSize(340, 520);

QRect placed(const QPoint& click, const QRect& reported, const QRect& available) {
    return panelRectangle(panelSize, itemRectangle(click, reported, screen, available), screen,
                          available);
}

}  // namespace

class PanelPlacementTest final : public QObject {
    Q_OBJECT

  private slots:
    void belowABarAtTheTopCentredOnTheItem() {
        const QRect item(600, 0, 90, 24);
        QCOMPARE(placed({610, 10}, item, screen.adjusted(0, 24, 0, 0)),
                 QRect(QPoint(item.center().x() - 169, 28), panelSize));
    }

    void aboveABarAtTheBottom() {
        const QRect panel = placed({640, 788}, {}, screen.adjusted(0, 0, 0, -28));
        QVERIFY(panel.bottom() < 800 - 28);
        QVERIFY(screen.contains(panel));
    }

    void besideABarAtTheLeftOrRight() {
        const QRect left = placed({12, 300}, {}, screen.adjusted(32, 0, 0, 0));
        QVERIFY(left.left() >= 32 && left.left() <= 40);
        const QRect right = placed({1268, 300}, {}, screen.adjusted(0, 0, -32, 0));
        QVERIFY(right.right() < 1280 - 32 && right.right() >= 1280 - 40);
    }

    void inACornerTheBarThatKeepsRoomDecides() {
        QCOMPARE(placed({1270, 14}, {}, screen.adjusted(0, 29, 0, 0)).topRight(), QPoint(1275, 33));
        QCOMPARE(placed({1270, 790}, {}, screen.adjusted(0, 0, 0, -29)).bottomRight(),
                 QPoint(1275, 766));
        QCOMPARE(placed({1270, 6}, {}, screen.adjusted(0, 0, -29, 0)).topRight(), QPoint(1246, 4));
        // Where none keeps room it is taken to be at the top or bottom.
        QCOMPARE(placed({1270, 14}, {}, screen).topRight(), QPoint(1275, 32));
    }

    void insideTheScreenInEveryCorner() {
        for (const int x : {2, 640, 1277}) {
            for (const int y : {2, 797}) {
                QVERIFY(screen.contains(placed({x, y}, {}, screen)));
            }
        }
    }

    void clearOfABarThatReservesNoSpace() {
        // A click 12 pixels from the edge: a bar of 24.
        QVERIFY(placed({640, 12}, {}, screen).top() >= 24);
        // At the very edge a thin bar is assumed, in the middle of a thick one no more than 64.
        QCOMPARE(itemRectangle({640, 0}, {}, screen, screen)->height(), 24);
        QCOMPARE(itemRectangle({640, 40}, {}, screen, screen)->height(), 64);
    }

    void aReportedRectangleIsBelievedOnlyIfItHoldsTheClickAndIsNoHigherThanABar() {
        const QRect honest(600, 0, 90, 30);
        QCOMPARE(itemRectangle({610, 10}, honest, screen, screen), honest);
        QVERIFY(itemRectangle({10, 10}, honest, screen, screen) != honest);
        const QRect wholeScreen(0, 0, 1280, 800);
        QVERIFY(itemRectangle({610, 10}, wholeScreen, screen, screen) != wholeScreen);
    }

    void aClickInNoBarGivesTheCornerWhereBarsKeepTheirItems() {
        QVERIFY(!itemRectangle({640, 400}, {}, screen, screen));
        QVERIFY(!itemRectangle({5000, 0}, {}, screen, screen));
        const QRect barAbove = screen.adjusted(0, 24, 0, 0);
        QCOMPARE(panelRectangle(panelSize, {}, screen, barAbove).topRight(), QPoint(1275, 28));
        const QRect barBelow = screen.adjusted(0, 0, 0, -24);
        QCOMPARE(panelRectangle(panelSize, {}, screen, barBelow).bottomRight(), QPoint(1275, 771));
    }

    void aClickIsWhereThePointerIsIfThatCanBeAsked() {
        QCOMPARE(clickPlace(QPoint(1200, 10), {9, 14}, {{screen}}), QPoint(1200, 10));
        QCOMPARE(clickPlace(QPoint(640, 400), {1200, 10}, {{screen}}), QPoint(640, 400));
    }

    void withoutAPointerAReportIsBelievedOnlyInABarAndNotAsAPlaceWithinTheItem() {
        const QRect second(1280, 0, 1920, 1080);
        const QList<ScreenPlace> both{{screen}, {second}};
        QCOMPARE(clickPlace({}, {1263, 14}, both), QPoint(1263, 14));
        QCOMPARE(clickPlace({}, {20, 790}, both), QPoint(20, 790));
        QCOMPARE(clickPlace({}, {3190, 1070}, both), QPoint(3190, 1070));
        const QList<ScreenPlace> dense{{screen, 2}};
        QCOMPARE(clickPlace({}, {2126, 1556}, dense), QPoint(1063, 778));  // in device pixels
        QVERIFY(!clickPlace({}, {9, 14}, both));                           // within the item
        QVERIFY(!clickPlace({}, {1290, 14}, both));   // likewise, of the second screen
        QVERIFY(!clickPlace({}, {0, 0}, both));       // not reported
        QVERIFY(!clickPlace({}, {640, 400}, both));   // in no bar
        QVERIFY(!clickPlace({}, {1263, -20}, both));  // on no screen
    }

    void aLowScreenMakesThePanelLower() {
        const QRect low(0, 0, 1024, 480);
        const QRect panel = panelRectangle(panelSize, QRect(500, 0, 24, 24), low, low);
        QCOMPARE(panel.height(), 480 - 8);
        QVERIFY(low.contains(panel));
    }

    void aSecondScreenKeepsItsPanel() {
        const QRect second(1280, 0, 1920, 1080);
        const auto item = itemRectangle({3190, 5}, {}, second, second);
        QVERIFY(second.contains(panelRectangle(panelSize, item, second, second)));
    }

    void aClickFollowsTheNearerEdgesOfAScreenThatChanges() {
        const QRect smaller(0, 0, 1024, 768);
        QCOMPARE(followScreen({1270, 12}, screen, smaller), QPoint(1014, 12));
        QCOMPARE(followScreen({30, 790}, screen, smaller), QPoint(30, 758));
        const QRect elsewhere(1920, 100, 1280, 800);
        QCOMPARE(followScreen({1270, 12}, screen, elsewhere), QPoint(3190, 112));
        QCOMPARE(followScreen({1270, 12}, screen, screen), QPoint(1270, 12));
    }
};

QTEST_GUILESS_MAIN(PanelPlacementTest)
#include "PanelPlacementTest.moc"
