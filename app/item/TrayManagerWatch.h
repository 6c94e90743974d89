// TrayManagerWatch: whether an XEmbed tray is on the screen, and when that changes. Main thread.
#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace bonkora {

class TrayManagerWatch final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

  public:
    TrayManagerWatch();
    ~TrayManagerWatch() override;

    bool isThere() const { return manager != XCB_WINDOW_NONE; }

  signals:
    void changed();

  private:
    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
    void look();

    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t managerMessage = XCB_ATOM_NONE;
    xcb_window_t manager = XCB_WINDOW_NONE;
};

}  // namespace bonkora
