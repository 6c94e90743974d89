#include "app/desktop/WindowSystem.h"

#include <QCursor>
#include <QFileInfo>
#include <QGuiApplication>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <array>

#include "app/desktop/SessionBus.h"
#include "app/desktop/X11.h"

namespace bonkora::windowSystem {

namespace {

bool isX11Reachable() {
    xcb_connection_t* server = xcb_connect(nullptr, nullptr);
    const bool isReachable = xcb_connection_has_error(server) == 0;
    xcb_disconnect(server);
    return isReachable;
}

bool isWaylandReachable() {
    const QString display = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QString socket =
        display.startsWith('/') ? display : qEnvironmentVariable("XDG_RUNTIME_DIR") + '/' + display;
    return !display.isEmpty() && QFileInfo::exists(socket);
}

// GNOME's compositor lets no Wayland client choose where its windows stand, but places those of its
// X server where they ask to be.
void choosePlatform() {
    const bool isGnome = qEnvironmentVariable("XDG_CURRENT_DESKTOP")
                             .split(':')
                             .contains("GNOME", Qt::CaseInsensitive);
    if (isGnome && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && isWaylandReachable() &&
        isX11Reachable()) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
}

}  // namespace

std::optional<std::string> prepare() {
    sessionBus::forbidAutolaunch();
    choosePlatform();
    const QString chosen = qEnvironmentVariable("QT_QPA_PLATFORM");
    const bool needsDisplay =
        chosen.isEmpty() || chosen.startsWith("xcb") || chosen.startsWith("wayland");
    if (!needsDisplay || isWaylandReachable() || isX11Reachable()) {
        return std::nullopt;
    }
    const QString display = qEnvironmentVariable("DISPLAY");
    return display.isEmpty() ? "there is no display (neither WAYLAND_DISPLAY nor DISPLAY is set)"
                             : "cannot open the display " + display.toStdString();
}

void keepOutOfTaskbars(QWidget& window) {
    xcb_connection_t* server = x11::connection();
    if (server == nullptr) {
        return;
    }
    const std::array<xcb_atom_t, 2> states{x11::atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                           x11::atom("_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(server, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window.winId()),
                        x11::atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(),
                        states.data());
}

bool isCompositing() {
    if (x11::connection() == nullptr) {
        return true;  // Wayland always does
    }
    const std::string name = "_NET_WM_CM_S" + std::to_string(x11::screenNumber());
    return x11::selectionOwner(x11::atom(name.c_str())) != XCB_WINDOW_NONE;
}

bool canGrabPointer() {
    return x11::connection() != nullptr;
}

bool isGrabWhole() {
    return x11::connection() != nullptr && !isWaylandReachable();
}

std::optional<QPoint> pointerPosition() {
    return isGrabWhole() ? std::optional(QCursor::pos()) : std::nullopt;
}

}  // namespace bonkora::windowSystem
