// MenuBarHosts: what there is on this desktop to show an item in, and when that changes. One
// implementation for each system.
#pragma once

#include <QObject>
#include <memory>

#include "app/item/MenuBarItem.h"

namespace bonkora {

class MenuBarHosts : public QObject {
    Q_OBJECT

  public:
    enum class Kind {
        unknown,  // not found out yet
        none,
        statusNotifier,  // a bar that takes items over the session bus
        platformTray,    // the one Qt's tray icon knows
    };

    // Those of this desktop.
    static std::unique_ptr<MenuBarHosts> make();

    Kind kind() const { return current; }
    // For the host of now, where there is one.
    virtual std::unique_ptr<MenuBarItem> makeItem() = 0;

  signals:
    void changed();

  protected:
    void set(Kind kind) {
        if (kind != current) {
            current = kind;
            emit changed();
        }
    }

  private:
    Kind current = Kind::unknown;
};

}  // namespace bonkora
