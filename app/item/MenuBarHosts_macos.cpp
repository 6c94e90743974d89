#include "app/item/MenuBarHosts.h"
#include "app/item/TrayIconItem.h"

namespace bonkora {

// The menu bar is always there.
class MenuBarHosts::Watch {};

MenuBarHosts::MenuBarHosts() {
    set(Kind::platformTray);
}

MenuBarHosts::~MenuBarHosts() = default;

std::unique_ptr<MenuBarItem> MenuBarHosts::makeItem(Kind) {
    return std::make_unique<TrayIconItem>();
}

}  // namespace bonkora
