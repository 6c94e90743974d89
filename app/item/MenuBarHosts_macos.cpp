#include "app/item/MenuBarHosts.h"
#include "app/item/TrayIconItem.h"

namespace bonkora {

namespace {

// The menu bar is always there.
class MenuBar final : public MenuBarHosts {
  public:
    MenuBar() { set(Kind::platformTray); }

    std::unique_ptr<MenuBarItem> makeItem() override { return std::make_unique<TrayIconItem>(); }
};

}  // namespace

std::unique_ptr<MenuBarHosts> MenuBarHosts::make() {
    return std::make_unique<MenuBar>();
}

}  // namespace bonkora
