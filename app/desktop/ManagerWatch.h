// ManagerWatch: the program that manages something for an X screen, told by the selection whose
// owner is its window (ICCCM, 2.8), and when it comes, changes or goes.
#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <string>

namespace bonkora {

class ManagerWatch final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

  public:
    // `selection` without the screen's number: "_XSETTINGS_S". Finds nothing without an X server.
    explicit ManagerWatch(const std::string& selection);
    ~ManagerWatch() override;

    // XCB_WINDOW_NONE where there is none.
    xcb_window_t window() const { return manager; }

  signals:
    // Another manager, none any more, or another property of its window's.
    void changed();

  private:
    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
    void look();

    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_window_t manager = XCB_WINDOW_NONE;
};

}  // namespace bonkora
