// X11: the connection that Qt holds to the X server, and the questions this application asks over
// it.
#pragma once

#include <xcb/xcb.h>

#include <QByteArray>

namespace bonkora::x11 {

// Null where the application is not on an X server.
xcb_connection_t* connection();
int screenNumber();

// The atom `name`, created if needed; XCB_ATOM_NONE without a connection.
xcb_atom_t atom(const char* name);
// XCB_WINDOW_NONE where nobody owns it.
xcb_window_t selectionOwner(xcb_atom_t selection);
// The whole contents of a window's property; empty where there is none.
QByteArray property(xcb_window_t window, xcb_atom_t name);

}  // namespace bonkora::x11
