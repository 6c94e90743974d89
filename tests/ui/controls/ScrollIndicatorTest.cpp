#include <QScrollArea>

#include "tests/support/Panel.h"
#include "ui/controls/ScrollIndicator.h"

using bonkora::ScrollIndicator;
using bonkora::test::Panel;

namespace {

struct Scrolled {
    Panel panel;
    ScrollIndicator* indicator = nullptr;

    Scrolled() {
        panel.open();
        indicator = panel.view->findChild<ScrollIndicator*>();
    }
    int top() const { return panel.row("Pain")->mapTo(panel.view.get(), QPoint(0, 0)).y(); }
    QPoint at(int y) const { return {indicator->width() / 2, y}; }
};

}  // namespace

class ScrollIndicatorTest final : public QObject {
    Q_OBJECT

  private slots:
    void draggingItScrolls() {
        Scrolled scrolled;
        const int before = scrolled.top();
        QTest::mousePress(scrolled.indicator, Qt::LeftButton, {}, scrolled.at(10));
        QCOMPARE(scrolled.top(), before);  // taking hold of it moves nothing
        QTest::mouseMove(scrolled.indicator, scrolled.at(scrolled.indicator->height()));
        QTest::mouseRelease(scrolled.indicator, Qt::LeftButton, {},
                            scrolled.at(scrolled.indicator->height()));
        QCOMPARE(scrolled.indicator->value(), scrolled.indicator->maximum());
        QVERIFY(scrolled.top() < before);
        QTest::mouseMove(scrolled.indicator, scrolled.at(0));
        QCOMPARE(scrolled.indicator->value(), scrolled.indicator->maximum());  // it was let go
    }

    void aPressBesideTheHandleBringsItThere() {
        Scrolled scrolled;
        QTest::mouseClick(scrolled.indicator, Qt::LeftButton, {},
                          scrolled.at(scrolled.indicator->height() - 1));
        QCOMPARE(scrolled.indicator->value(), scrolled.indicator->maximum());
    }

    void otherButtonsDoNothing() {
        Scrolled scrolled;
        QTest::mouseClick(scrolled.indicator, Qt::RightButton, {},
                          scrolled.at(scrolled.indicator->height() - 1));
        QCOMPARE(scrolled.indicator->value(), 0);
    }
};

QTEST_MAIN(ScrollIndicatorTest)
#include "ScrollIndicatorTest.moc"
