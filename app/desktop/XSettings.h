// XSettings: what an X desktop tells every program of its look, in a property of a window that its
// settings manager owns (freedesktop.org, "XSETTINGS - Cross desktop settings").
#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QObject>
#include <optional>

namespace bonkora {

namespace xSettings {

// Whether the property's contents ask for a dark look; nothing where they say nothing of it or are
// no settings. Any thread.
std::optional<bool> asksForDark(const QByteArray& contents);

}  // namespace xSettings

class XSettingsWatch final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

  public:
    XSettingsWatch();
    ~XSettingsWatch() override;

    std::optional<bool> isDark() const { return dark; }

  signals:
    void changed();

  private:
    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
    void read();

    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    xcb_window_t manager = XCB_WINDOW_NONE;
    std::optional<bool> dark;
};

}  // namespace bonkora
