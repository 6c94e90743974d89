// TrayIconItem: the item as Qt's tray icon: the menu bar on macOS, an XEmbed tray elsewhere, where
// it is made wide enough to show the title beside the symbol. Main thread.
#pragma once

#include <QSystemTrayIcon>

#include "app/item/MenuBarItem.h"
#include "app/item/TrayWindow.h"

namespace bonkora {

class TrayIconItem final : public MenuBarItem {
    Q_OBJECT

  public:
    TrayIconItem();

    void show(const MenuBarLabel& label) override;
    QRect geometry() const override { return icon.geometry(); }

  private:
    void draw();

    TrayWindow window;
    QSystemTrayIcon icon;
    MenuBarLabel label{};
    QColor color;
};

}  // namespace bonkora
