// TrayIconItem: the item as Qt's tray icon: the menu bar on macOS, an XEmbed tray elsewhere. It
// shows the symbol, and the title as a tool tip.
#pragma once

#include <QColor>
#include <QSystemTrayIcon>
#include <QTimer>

#include "app/item/MenuBarItem.h"

namespace bonkora {

// The window in which Qt's tray icon is embedded, where there is one. One implementation for each
// system.
class TrayWindow final : public QObject {
    Q_OBJECT

  public:
    TrayWindow();

    // What reads well on the tray as it looks now; black where the system colours the icon itself.
    QColor textColor() const;

  signals:
    // A tray has taken the icon in, or laid it out anew, and has had the time to paint itself.
    void embedded();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QTimer settled;
};

class TrayIconItem final : public MenuBarItem {
    Q_OBJECT

  public:
    TrayIconItem();

    void display(const MenuBarLabel& label) override;
    QRect geometry() const override { return icon.geometry(); }

  private:
    void draw();

    TrayWindow window;
    QSystemTrayIcon icon;
    MenuBarLabel label{};
    QColor color;
};

}  // namespace bonkora
