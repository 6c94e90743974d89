#include "app/item/MenuBarHosts.h"
#include "app/item/StatusNotifierItem.h"
#include "app/item/StatusNotifierWatch.h"
#include "app/item/TrayIconItem.h"
#include "app/item/TrayManagerWatch.h"

namespace bonkora {

// A bar on the session bus is taken before an XEmbed tray.
class MenuBarHosts::Watch {
  public:
    explicit Watch(MenuBarHosts& hosts) {
        const auto decide = [this, &hosts] { hosts.set(kind()); };
        connect(&bus, &StatusNotifierWatch::changed, &hosts, decide);
        connect(&tray, &TrayManagerWatch::changed, &hosts, decide);
    }

    Kind kind() const {
        if (!bus.isHostThere()) {
            return Kind::unknown;
        }
        return *bus.isHostThere() ? Kind::statusNotifier
               : tray.isThere()   ? Kind::platformTray
                                  : Kind::none;
    }

  private:
    StatusNotifierWatch bus;
    TrayManagerWatch tray;
};

MenuBarHosts::MenuBarHosts() : watch(std::make_unique<Watch>(*this)) {
    set(watch->kind());
}

MenuBarHosts::~MenuBarHosts() = default;

std::unique_ptr<MenuBarItem> MenuBarHosts::makeItem(Kind kind) {
    if (kind == Kind::statusNotifier) {
        return std::make_unique<StatusNotifierItem>();
    }
    return std::make_unique<TrayIconItem>();
}

}  // namespace bonkora
