#include "app/MenuBarExtra.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <utility>

#include "app/desktop/WindowSystem.h"
#include "app/window/PanelPlacement.h"

namespace bonkora {

namespace {

// The press that closed the panel may come again as a click on the item.
constexpr int closedMilliseconds = 300;
// At the start of a session the bar may come after us, and one that died may come back.
constexpr int hostGraceMilliseconds = 1000;
// A panel with an open dialog stays: the dialog's loop would return into what is gone. It is asked
// again after this time.
constexpr int occupiedMilliseconds = 250;

// The one that holds the point, or the primary one.
const QScreen& screenOf(const QPoint& point) {
    const QScreen* screen = QGuiApplication::screenAt(point);
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

}  // namespace

MenuBarExtra::MenuBarExtra(MenuBarScene theScene, const PanelEnvironment& theEnvironment)
    : scene(std::move(theScene)), environment(theEnvironment) {
    for (platform::ObservableObject* observed : scene.observed) {
        observation.observe(*observed);
    }
    hostGrace.setSingleShot(true);
    hostGrace.setInterval(hostGraceMilliseconds);
    connect(&hostGrace, &QTimer::timeout, this, &MenuBarExtra::showPlainWindow);
    connect(&screens, &ScreenWatch::changed, this, &MenuBarExtra::followScreens);
    connect(&hosts, &MenuBarHosts::changed, this, &MenuBarExtra::followHosts);
    followHosts();
}

MenuBarExtra::~MenuBarExtra() {
    if (panel) {
        panel->disconnect(this);
        delete panel;
    }
}

void MenuBarExtra::followHosts() {
    switch (hosts.kind()) {
        case MenuBarHosts::Kind::unknown:
            break;
        case MenuBarHosts::Kind::none:
            item.reset();
            hostGrace.start();
            break;
        case MenuBarHosts::Kind::statusNotifier:
        case MenuBarHosts::Kind::platformTray:
            takeItem(hosts.kind());
            break;
    }
}

void MenuBarExtra::takeItem(MenuBarHosts::Kind kind) {
    hostGrace.stop();
    item = MenuBarHosts::makeItem(kind);
    connect(item.get(), &MenuBarItem::clicked, this, &MenuBarExtra::click);
    refreshLabel();
    leavePlainWindow();
}

void MenuBarExtra::leavePlainWindow() {
    if (!item || !panel || panel->style() != PanelWindow::Style::plain) {
        return;
    }
    if (PanelWindow::isOccupied()) {
        QTimer::singleShot(occupiedMilliseconds, this, &MenuBarExtra::leavePlainWindow);
        return;
    }
    panel->disconnect(this);  // goes because it is needed no more: not the user's wish to leave
    panel->close();
}

void MenuBarExtra::showPlainWindow() {
    if (panel && panel->style() == PanelWindow::Style::plain) {
        return;
    }
    if (panel && PanelWindow::isOccupied()) {
        hostGrace.start();
        return;
    }
    qWarning(
        "bonkora: this desktop has no menu bar or tray to show an item in;"
        " the panel is a window until there is one");
    if (panel) {
        panel->close();
    }
    PanelWindow* window = makePanel(PanelWindow::Style::plain);
    connect(window, &PanelWindow::closed, this, environment.terminate);
    window->open(placeInTheMiddle());
}

void MenuBarExtra::refreshLabel() {
    if (item) {
        item->display(scene.label());
    }
}

void MenuBarExtra::openPanel() {
    if (panel) {
        panel->raiseToFront();
    } else if (item) {
        makePanel(PanelWindow::Style::dropDown)
            ->open(placeBesideItem(screenOf(clickedScreen.center())));
    }
}

void MenuBarExtra::click(const QPoint& reported) {
    if (panel && PanelWindow::isOccupied()) {
        panel->raiseToFront();
    } else if (panel) {
        if (panel->hasSettled()) {
            panel->close();
        }
    } else if (!sinceClosed.isValid() || sinceClosed.elapsed() >= closedMilliseconds) {
        makePanel(PanelWindow::Style::dropDown)
            ->open(placeBeside(windowSystem::clickPosition(reported)));
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

PanelWindow* MenuBarExtra::makePanel(PanelWindow::Style style) {
    panel = new PanelWindow(scene.content(environment), style);
    connect(panel, &PanelWindow::closed, this, [this] {
        panel = nullptr;
        sinceClosed.start();
    });
    return panel;
}

}  // namespace bonkora
