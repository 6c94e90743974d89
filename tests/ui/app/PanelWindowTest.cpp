#include <QPointer>
#include <QWindow>

#include "app/window/PanelWindow.h"
#include "tests/support/Panel.h"

using bonkora::PanelWindow;
using bonkora::test::Panel;

namespace {

// A panel window over the real content.
struct Opened {
    Panel panel;
    QPointer<PanelWindow> window;
    QPointer<QWidget> content;
    int closings = 0;

    explicit Opened(PanelWindow::Style style = PanelWindow::Style::dropDown) {
        auto view =
            std::make_unique<bonkora::MenuBarContentView>(*panel.controller, panel.environment());
        content = view.get();
        window = new PanelWindow(std::move(view), style);
        QObject::connect(window, &PanelWindow::closed, window, [this] { ++closings; });
        window->open(QRect(100, 30, 340, 520));
        (void)QTest::qWaitForWindowActive(window);
        Panel::settle();
    }
    ~Opened() { delete window; }
};

}  // namespace

class PanelWindowTest final : public QObject {
    Q_OBJECT

  private slots:
    void itOpensWhereItIsToldAndIsNamed() {
        Opened opened;
        QCOMPARE(opened.window->geometry(), QRect(100, 30, 340, 520));
        QCOMPARE(opened.content->size(), QSize(340, 520));
        QCOMPARE(opened.window->windowTitle(), "Bonkora");
    }

    void closingItTakesTheContentAlong() {
        Opened opened;
        opened.window->close();
        QCOMPARE(opened.closings, 1);
        QTRY_VERIFY(!opened.window);
        QVERIFY(!opened.content);
    }

    void itTellsOfEscapeAndOfAnotherActiveWindowAndStays() {
        Opened opened;
        const QSignalSpy escapes(opened.window, &PanelWindow::escapePressed);
        const QSignalSpy deactivations(opened.window, &PanelWindow::deactivated);
        QTest::keyClick(opened.window->focusWidget(), Qt::Key_Escape);
        QCOMPARE(escapes.count(), 1);
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_COMPARE(deactivations.count(), 1);
        QCOMPARE(opened.closings, 0);
    }

    void ofThePlainWindowOnlyItsClosingIsTold() {
        Opened opened(PanelWindow::Style::plain);
        const QSignalSpy escapes(opened.window, &PanelWindow::escapePressed);
        const QSignalSpy deactivations(opened.window, &PanelWindow::deactivated);
        QTest::keyClick(opened.window, Qt::Key_Escape);
        QWidget other;
        other.show();
        other.activateWindow();
        Panel::settle();
        QCOMPARE(escapes.count() + deactivations.count(), 0);
        QCOMPARE(opened.closings, 0);
        opened.window->close();
        QCOMPARE(opened.closings, 1);
    }
};

QTEST_MAIN(PanelWindowTest)
#include "PanelWindowTest.moc"
