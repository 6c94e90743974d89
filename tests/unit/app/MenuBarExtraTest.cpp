#include "app/MenuBarExtra.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDialog>
#include <QPointer>

#include "app/BonkoraApp.h"
#include "tests/support/Panel.h"

using bonkora::BonkoraApp;
using bonkora::MenuBarExtra;
using bonkora::MenuBarHosts;
using bonkora::MenuBarItem;
using bonkora::MenuBarLabel;
using bonkora::PanelWindow;
using bonkora::test::Panel;

namespace {

// What has been sent on the session bus is here and dealt with: the bus keeps the order.
void settleTheBus() {
    QVERIFY(!QDBusConnection::sessionBus().interface()->registeredServiceNames().value().isEmpty());
    Panel::settle();
}

// A bar of the test's own.
class Bar final : public MenuBarHosts {
  public:
    class Item final : public MenuBarItem {
      public:
        explicit Item(Bar& theBar) : bar(theBar) { bar.item = this; }
        void display(const MenuBarLabel& label) override { bar.title = label.title; }
        QRect geometry() const override { return {500, 0, 90, 24}; }

      private:
        Bar& bar;
    };

    explicit Bar(Kind kind) { set(kind); }

    void become(Kind kind) { set(kind); }
    std::unique_ptr<MenuBarItem> makeItem() override { return std::make_unique<Item>(*this); }

    QPointer<Item> item;
    QString title;
};

struct Shown {
    Panel panel;
    BonkoraApp app{[this] { return panel.controller; }};
    Bar* bar;
    MenuBarExtra extra;

    explicit Shown(MenuBarHosts::Kind kind = MenuBarHosts::Kind::statusNotifier)
        : bar(new Bar(kind)),
          extra(app.body(), panel.environment(), std::unique_ptr<MenuBarHosts>(bar)) {}

    static PanelWindow* window() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<PanelWindow*>(widget)) {
                if (window->isVisible()) {
                    return window;
                }
            }
        }
        return nullptr;
    }
    void click() const { emit bar->item->clicked({520, 10}); }
    PanelWindow* opened() {
        click();
        PanelWindow* opened = window();
        [&] { QVERIFY(opened != nullptr && QTest::qWaitForWindowActive(opened)); }();
        Panel::settle();
        return opened;
    }
};

}  // namespace

class MenuBarExtraTest final : public QObject {
    Q_OBJECT

  private slots:
    void cleanup() { QTRY_VERIFY(Shown::window() == nullptr); }

    void aClickOpensThePanelBeneathTheItemWithFreshContent() {
        Shown shown;
        const PanelWindow* window = shown.opened();
        QCOMPARE(window->style(), PanelWindow::Style::dropDown);
        QCOMPARE(window->size(), QSize(340, 520));
        QCOMPARE(window->y(), 28);
        QVERIFY(window->findChild<bonkora::MenuBarContentView*>() != nullptr);
    }

    void escapeClosesItAndTakesTheContentAlong() {
        Shown shown;
        const QPointer<PanelWindow> window = shown.opened();
        const QPointer<QWidget> content = window->findChild<bonkora::MenuBarContentView*>();
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(!window);
        QVERIFY(!content);
    }

    void anotherActiveWindowClosesIt() {
        Shown shown;
        const QPointer<PanelWindow> window = shown.opened();
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!window);
    }

    void aMenuOfItsOwnDoesNotCloseIt() {
        Shown shown;
        const QPointer<PanelWindow> window = shown.opened();
        auto* popup = new QWidget(window, Qt::Popup);
        popup->show();
        Panel::settle();
        QVERIFY(PanelWindow::isOccupied());
        QEvent deactivation(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(window, &deactivation);
        Panel::settle();
        QVERIFY(window && window->isVisible());
        popup->close();
    }

    void aLaterStartOpensItWhereTheItemIs() {
        Shown shown;
        shown.extra.open();
        QVERIFY(Shown::window() != nullptr);
        QCOMPARE(Shown::window()->y(), 28);
        shown.extra.open();
        QCOMPARE(shown.panel.terminations, 0);
    }

    void aMinimisedDialogAndThePanelBehindItComeBackByAClickAndByALaterStart() {
        Shown shown;
        const QPointer<PanelWindow> window = shown.opened();
        QDialog dialog(window);
        dialog.setModal(true);
        dialog.show();
        const auto minimised = [&] { return window->isMinimized() || dialog.isMinimized(); };
        for (const bool byClick : {true, false}) {
            window->showMinimized();
            dialog.showMinimized();
            QVERIFY(minimised());
            byClick ? shown.click() : shown.extra.open();
            QVERIFY(!minimised());
            QVERIFY(window && window->isVisible() && dialog.isVisible());
        }
    }

    void theScreenThatLocksAndTheMachineThatSleepsCloseThePanelAndItsMenu() {
        const auto announce = [](const char* path, const char* interface, const char* name,
                                 const QVariantList& arguments) {
            QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
            signal.setArguments(arguments);
            QDBusConnection::sessionBus().send(signal);
        };
        for (int news = 0; news < 3; ++news) {
            Shown shown;
            const QPointer<PanelWindow> window = shown.opened();
            const QPointer<QWidget> menu = new QWidget(window, Qt::Popup);
            menu->show();
            announce("/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged", {false});
            announce("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                     {false});
            settleTheBus();
            QVERIFY(window && menu->isVisible());
            if (news == 0) {
                announce("/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged", {true});
            } else if (news == 1) {
                announce("/org/freedesktop/login1/session/_32", "org.freedesktop.login1.Session",
                         "Lock", {});
            } else {
                announce("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                         "PrepareForSleep", {true});
            }
            QTRY_VERIFY(!window);
        }
    }

    void theScreenThatLocksLeavesADialogAndItsPanelOpen() {
        Shown shown;
        const QPointer<PanelWindow> window = shown.opened();
        QDialog dialog(window);
        dialog.setModal(true);
        dialog.show();
        QDBusMessage signal = QDBusMessage::createSignal(
            "/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged");
        signal << true;
        QDBusConnection::sessionBus().send(signal);
        settleTheBus();
        QVERIFY(window && dialog.isVisible());
    }

    void withoutABarItIsAPlainWindowWhoseClosingEndsTheApplication() {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no menu bar or tray"));
        Shown shown(MenuBarHosts::Kind::none);
        QVERIFY(Shown::window() == nullptr);
        QTRY_VERIFY(Shown::window() != nullptr);
        QCOMPARE(Shown::window()->style(), PanelWindow::Style::plain);
        Shown::window()->close();
        QCOMPARE(shown.panel.terminations, 1);
    }

    void aBarThatComesTakesTheItemAndClosesThePlainWindow() {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no menu bar or tray"));
        Shown shown(MenuBarHosts::Kind::none);
        QTRY_VERIFY(Shown::window() != nullptr);
        shown.bar->become(MenuBarHosts::Kind::platformTray);
        QTRY_VERIFY(Shown::window() == nullptr);
        QCOMPARE(shown.bar->title, "Bonkora OFF");
        QCOMPARE(shown.panel.terminations, 0);
    }

    void theShownItemFollowsTheController() {
        Shown shown;
        QCOMPARE(shown.bar->title, "Bonkora OFF");
        shown.panel.startDetector();
        QCOMPARE(shown.bar->title, "Bonkora 0");
        shown.panel.system.processes->last().end(1);
        shown.panel.pass(std::chrono::milliseconds(0));
        QCOMPARE(shown.bar->title, "Bonkora OFF");
    }

    void theShownItemFollowsTheStoredTotal() {
        Shown shown;
        shown.panel.startDetector();
        shown.panel.store("[General]\nslapCounterTotal=1284\n");
        QTRY_COMPARE(shown.bar->title, "Bonkora 1284");
    }

    void anItemThatChangesItsHostShowsTheLabelAtOnce() {
        Shown shown;
        shown.bar->title.clear();
        shown.bar->become(MenuBarHosts::Kind::platformTray);
        QCOMPARE(shown.bar->title, "Bonkora OFF");
        QVERIFY(shown.opened() != nullptr);
    }
};

int main(int argumentCount, char** arguments) {
    // The one bus that the test runs on plays the system's too.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    QApplication application(argumentCount, arguments);
    MenuBarExtraTest test;
    return QTest::qExec(&test, argumentCount, arguments);
}

#include "MenuBarExtraTest.moc"
