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

    void escapeClosesItAndTakesTheContentAlong() {
        Opened opened;
        QTest::keyClick(opened.window->focusWidget(), Qt::Key_Escape);
        QCOMPARE(opened.closings, 1);
        QTRY_VERIFY(!opened.window);
        QVERIFY(!opened.content);
    }

    void anotherActiveWindowClosesIt() {
        Opened opened;
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_COMPARE(opened.closings, 1);
        QTRY_VERIFY(!opened.window);
    }

    void aMenuOfItsOwnDoesNotCloseIt() {
        Opened opened;
        QWidget popup(opened.window, Qt::Popup);
        popup.show();
        Panel::settle();
        QVERIFY(PanelWindow::isOccupied());
        QEvent deactivation(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(opened.window, &deactivation);
        Panel::settle();
        QCOMPARE(opened.closings, 0);
    }

    void thePlainWindowKeepsOpenOnEscapeAndWhenAnotherIsActive() {
        Opened opened(PanelWindow::Style::plain);
        QTest::keyClick(opened.window, Qt::Key_Escape);
        QWidget other;
        other.show();
        other.activateWindow();
        Panel::settle();
        QCOMPARE(opened.closings, 0);
        opened.window->close();
        QCOMPARE(opened.closings, 1);
    }
};

QTEST_MAIN(PanelWindowTest)
#include "PanelWindowTest.moc"
