// XSettings: what an X desktop tells every program of its look, in a property of a window that its
// settings manager owns (freedesktop.org, "XSETTINGS - Cross desktop settings").
#pragma once

#include <QByteArray>
#include <QObject>
#include <optional>

#include "app/desktop/ManagerWatch.h"

namespace bonkora {

namespace xSettings {

// Whether the property's contents ask for a dark look; nothing where they say nothing of it or are
// no settings. Any thread.
std::optional<bool> asksForDark(const QByteArray& contents);
// Whether it asks for pictures on buttons that have a text; false where it says nothing of that.
bool asksForButtonImages(const QByteArray& contents);

// The property of now; empty without an X server or a settings manager. Main thread.
QByteArray read();

}  // namespace xSettings

class XSettingsWatch final : public QObject {
    Q_OBJECT

  public:
    XSettingsWatch();

    std::optional<bool> isDark() const { return dark; }

  signals:
    void changed();

  private:
    void read();

    ManagerWatch manager;
    std::optional<bool> dark;
};

}  // namespace bonkora
