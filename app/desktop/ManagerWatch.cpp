#include "app/desktop/ManagerWatch.h"

#include <QByteArray>
#include <QCoreApplication>
#include <cstdint>

#include "app/desktop/X11.h"

namespace bonkora {

ManagerWatch::ManagerWatch(const std::string& theSelection) {
    if (x11::connection() == nullptr) {
        return;
    }
    selection = x11::atom((theSelection + std::to_string(x11::screenNumber())).c_str());
    look();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

ManagerWatch::~ManagerWatch() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

void ManagerWatch::look() {
    manager = x11::selectionOwner(selection);
    if (manager != XCB_WINDOW_NONE) {
        // To hear of its changes and of its end.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(x11::connection(), manager, XCB_CW_EVENT_MASK, &mask);
    }
}

bool ManagerWatch::nativeEventFilter(const QByteArray& kind, void* message, qintptr*) {
    if (kind != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7F;
    // A new manager says so to the root window: the selection is the second number of its message.
    const bool hasCome =
        type == XCB_CLIENT_MESSAGE &&
        static_cast<const xcb_client_message_event_t*>(message)->data.data32[1] == selection;
    const bool hasChanged =
        type == XCB_PROPERTY_NOTIFY &&
        static_cast<const xcb_property_notify_event_t*>(message)->window == manager;
    const bool hasGone = type == XCB_DESTROY_NOTIFY &&
                         static_cast<const xcb_destroy_notify_event_t*>(message)->window == manager;
    if (hasCome || hasChanged || hasGone) {
        look();
        emit changed();
    }
    return false;
}

}  // namespace bonkora
