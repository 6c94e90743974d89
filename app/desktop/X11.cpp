#include "app/desktop/X11.h"

#include <QGuiApplication>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace bonkora::x11 {

namespace {

struct Freed {
    void operator()(void* memory) const { std::free(memory); }
};

}  // namespace

xcb_connection_t* connection() {
    const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native != nullptr ? native->connection() : nullptr;
}

int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0) {
        std::free(host);
    }
    return screen;
}

xcb_atom_t atom(const char* name) {
    xcb_connection_t* server = connection();
    if (server == nullptr) {
        return XCB_ATOM_NONE;
    }
    const auto question =
        xcb_intern_atom(server, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, Freed> answer(
        xcb_intern_atom_reply(server, question, nullptr));
    return answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t selectionOwner(xcb_atom_t selection) {
    xcb_connection_t* server = connection();
    if (server == nullptr || selection == XCB_ATOM_NONE) {
        return XCB_WINDOW_NONE;
    }
    const auto question = xcb_get_selection_owner(server, selection);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Freed> answer(
        xcb_get_selection_owner_reply(server, question, nullptr));
    return answer ? answer->owner : xcb_window_t{XCB_WINDOW_NONE};
}

QByteArray property(xcb_window_t window, xcb_atom_t name) {
    constexpr std::uint32_t mostWords = 0x10000;
    xcb_connection_t* server = connection();
    if (server == nullptr) {
        return {};
    }
    const auto question =
        xcb_get_property(server, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords);
    const std::unique_ptr<xcb_get_property_reply_t, Freed> answer(
        xcb_get_property_reply(server, question, nullptr));
    return answer ? QByteArray(static_cast<const char*>(xcb_get_property_value(answer.get())),
                               xcb_get_property_value_length(answer.get()))
                  : QByteArray();
}

}  // namespace bonkora::x11
