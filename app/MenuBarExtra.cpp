#include "app/MenuBarExtra.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <utility>

#include "app/ApplicationIcon.h"
#include "app/desktop/WindowSystem.h"
#include "app/window/LayerShell.h"
#include "app/window/PanelPlacement.h"

namespace bonkora {

namespace {

using Event = PanelLogic::Event;

// The screen that holds the point, or the primary one.
const QScreen& screenOf(const QPoint& point) {
    const QScreen* screen = QGuiApplication::screenAt(point);
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

PanelLogic::Time now() {
    return std::chrono::duration_cast<PanelLogic::Time>(
        std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace

MenuBarExtra::MenuBarExtra(MenuBarScene theScene, const PanelEnvironment& theEnvironment,
                           std::unique_ptr<MenuBarHosts> theHosts)
    : scene(std::move(theScene)), environment(theEnvironment), hosts(std::move(theHosts)) {
    for (platform::ObservableObject* observed : scene.observed) {
        observation.observe(*observed);
    }
    wakeTimer.setSingleShot(true);
    connect(&wakeTimer, &QTimer::timeout, this, [this] { handle(Event::wake); });
    connect(&screens, &ScreenWatch::changed, this, &MenuBarExtra::followScreens);
    connect(hosts.get(), &MenuBarHosts::changed, this, &MenuBarExtra::followHosts);
    followHosts();
}

MenuBarExtra::~MenuBarExtra() {
    if (panel) {
        panel->disconnect(this);
        delete panel;
    }
}

void MenuBarExtra::open() {
    handle(Event::openAsked);
}

void MenuBarExtra::followHosts() {
    switch (hosts->kind()) {
        case MenuBarHosts::Kind::unknown:
            break;
        case MenuBarHosts::Kind::none:
            item.reset();
            handle(Event::hostWent);
            break;
        case MenuBarHosts::Kind::statusNotifier:
        case MenuBarHosts::Kind::platformTray:
            item = hosts->makeItem();
            connect(item.get(), &MenuBarItem::clicked, this, &MenuBarExtra::click);
            connect(item.get(), &MenuBarItem::openAsked, this, &MenuBarExtra::open);
            refreshLabel();
            handle(Event::hostCame);
            break;
    }
}

void MenuBarExtra::refreshLabel() {
    if (item) {
        item->display(scene.label());
    }
}

void MenuBarExtra::click(const QPoint& reported) {
    reportedClick = reported;
    handle(Event::itemClicked);
}

void MenuBarExtra::leaveScreenToItsLock() {
    // A menu holds the pointer too. A dialog does not, and stays.
    while (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    }
    handle(Event::screenLocking);
}

void MenuBarExtra::handle(Event event) {
    carryOut(decide(event));
}

// What happens to the panel is told while it handles an event, in which it must not be closed.
void MenuBarExtra::handleInNextTurn(Event event) {
    QTimer::singleShot(0, panel, [this, action = decide(event)] { carryOut(action); });
}

PanelLogic::Action MenuBarExtra::decide(Event event) {
    const PanelLogic::Time time = now();
    const PanelLogic::Action action = logic.decide(event, time, PanelWindow::isOccupied());
    if (const auto wakeAt = logic.wakeAt()) {
        wakeTimer.start(std::max(*wakeAt - time, PanelLogic::Time(0)));
    } else {
        wakeTimer.stop();
    }
    return action;
}

void MenuBarExtra::carryOut(PanelLogic::Action action) {
    switch (action) {
        case PanelLogic::Action::nothing:
            break;
        case PanelLogic::Action::dropDownAtClick:
            openPanel(PanelWindow::Style::dropDown, placeAtClick());
            break;
        case PanelLogic::Action::dropDownAtItem:
            openPanel(PanelWindow::Style::dropDown,
                      placeBesideItem(screenOf(clickedScreen.center())));
            break;
        case PanelLogic::Action::openPlainWindow:
            qWarning(
                "bonkora: this desktop has no menu bar or tray to show an item in;"
                " the panel is a window until there is one");
            openPanel(PanelWindow::Style::plain, placeInTheMiddle());
            break;
        case PanelLogic::Action::close:
            panel->close();
            break;
        case PanelLogic::Action::raise:
            panel->raiseToFront();
            break;
        case PanelLogic::Action::endApplication:
            environment.terminate();
            break;
    }
}

void MenuBarExtra::openPanel(PanelWindow::Style style, const QRect& place) {
    if (panel) {
        panel->disconnect(this);  // its closing is not the user's wish
        screenLock.reset();
        panel->close();
    }
    panel = new PanelWindow(scene.content(environment), style);
    // Of this window and its dialogs alone: an item has none, and drawing it would take a third of
    // the start in an embedding tray.
    panel->setWindowIcon(applicationIcon());
    connect(panel, &PanelWindow::pressedOutside, this,
            [this] { handleInNextTurn(Event::pressedOutside); });
    connect(panel, &PanelWindow::escapePressed, this,
            [this] { handleInNextTurn(Event::escapePressed); });
    connect(panel, &PanelWindow::deactivated, this,
            [this] { handleInNextTurn(Event::deactivated); });
    connect(panel, &PanelWindow::dialogClosed, this,
            [this] { handleInNextTurn(Event::dialogClosed); });
    connect(panel, &PanelWindow::closed, this, [this] {
        panel = nullptr;
        screenLock.reset();
        handle(Event::panelClosed);
    });
    panel->open(place);
    handle(Event::panelOpened);
    if (style == PanelWindow::Style::dropDown) {
        // Queued, since closing the panel ends the watch.
        connect(&screenLock.emplace(), &ScreenLockWatch::locking, this,
                &MenuBarExtra::leaveScreenToItsLock, Qt::QueuedConnection);
    }
}

void MenuBarExtra::followScreens() {
    if (!panel) {
        return;
    }
    if (panel->style() == PanelWindow::Style::plain) {
        panel->moveTo(placeInTheMiddle());
    } else if (item) {
        panel->moveTo(placeBesideItem(*panel->screen()));
    }
}

QRect MenuBarExtra::placeAtClick() {
    QList<panelPlacement::ScreenPlace> places;
    for (const QScreen* screen : QGuiApplication::screens()) {
        places.append({screen->geometry(), screen->devicePixelRatio()});
    }
    const auto pointer = windowSystem::pointerPosition();
    auto click = panelPlacement::clickPlace(pointer, reportedClick, places);
    // With several screens a report is no proof: some bars count from the corner of theirs.
    if (!pointer && (!click || places.size() > 1)) {
        if (const auto found = layerShell::findPointer()) {
            click = found;
        }
    }
    return click ? placeBeside(*click) : placeBesideItem(screenOf(clickedScreen.center()));
}

// Most bars tell the item's place only by a click on it.
QRect MenuBarExtra::placeBesideItem(const QScreen& screen) {
    if (const QRect reported = item->geometry(); !reported.isEmpty()) {
        return placeBeside(reported.center());
    }
    if (lastClick) {
        return placeBeside(
            panelPlacement::followScreen(*lastClick, clickedScreen, screen.geometry()));
    }
    return panelPlacement::panelRectangle(scene.contentSize, std::nullopt, screen.geometry(),
                                          screen.availableGeometry());
}

QRect MenuBarExtra::placeBeside(const QPoint& click) {
    const QScreen& screen = screenOf(click);
    lastClick = click;
    clickedScreen = screen.geometry();
    const QRect available = screen.availableGeometry();
    const auto clicked =
        panelPlacement::itemRectangle(click, item->geometry(), clickedScreen, available);
    return panelPlacement::panelRectangle(scene.contentSize, clicked, clickedScreen, available);
}

QRect MenuBarExtra::placeInTheMiddle() const {
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QRect place(QPoint(), scene.contentSize.boundedTo(available.size()));
    place.moveCenter(available.center());
    return place;
}

}  // namespace bonkora
