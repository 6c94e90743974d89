#include "app/item/TrayManagerWatch.h"

#include <QCoreApplication>
#include <string>

#include "app/desktop/X11.h"

namespace bonkora {

TrayManagerWatch::TrayManagerWatch() {
    if (x11::connection() == nullptr) {
        return;
    }
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(x11::screenNumber());
    selection = x11::atom(name.c_str());
    managerMessage = x11::atom("MANAGER");
    look();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

TrayManagerWatch::~TrayManagerWatch() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

void TrayManagerWatch::look() {
    manager = x11::selectionOwner(selection);
    if (manager != XCB_WINDOW_NONE) {
        // To hear of its end.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(x11::connection(), manager, XCB_CW_EVENT_MASK, &mask);
    }
}

bool TrayManagerWatch::nativeEventFilter(const QByteArray& kind, void* message, qintptr*) {
    if (kind != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7F;
    const bool hasCome =
        type == XCB_CLIENT_MESSAGE &&
        static_cast<const xcb_client_message_event_t*>(message)->type == managerMessage;
    const bool hasGone = type == XCB_DESTROY_NOTIFY &&
                         static_cast<const xcb_destroy_notify_event_t*>(message)->window == manager;
    if (hasCome || hasGone) {
        look();
        emit changed();
    }
    return false;
}

}  // namespace bonkora
