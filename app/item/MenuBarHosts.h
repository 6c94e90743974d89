// MenuBarHosts: what there is on this desktop to show an item in, and when that changes. One
// implementation for each system. Main thread.
#pragma once

#include <QObject>
#include <memory>

#include "app/item/MenuBarItem.h"

namespace bonkora {

class MenuBarHosts final : public QObject {
    Q_OBJECT

  public:
    enum class Kind {
        unknown,  // not found out yet
        none,
        statusNotifier,  // a bar that takes items over the session bus
        platformTray,    // the one Qt's tray icon knows
    };

    MenuBarHosts();
    ~MenuBarHosts() override;

    Kind kind() const { return current; }
    // For a kind with a host.
    static std::unique_ptr<MenuBarItem> makeItem(Kind kind);

  signals:
    void changed();

  private:
    class Watch;

    void set(Kind kind);

    Kind current = Kind::unknown;
    std::unique_ptr<Watch> watch;
};

}  // namespace bonkora
