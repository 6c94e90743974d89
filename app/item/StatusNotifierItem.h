// StatusNotifierItem: our own item on the session bus. It registers again with every new watcher,
// so a bar that died and came back shows it again.
#pragma once

#include <QDBusServiceWatcher>

#include "app/item/MenuBarItem.h"

namespace bonkora {

// The service with which items and bars register, which is also the name of its interface.
namespace statusNotifierWatcher {

inline const QString service = "org.kde.StatusNotifierWatcher";
inline const QString path = "/StatusNotifierWatcher";

}  // namespace statusNotifierWatcher

class StatusNotifierAdaptor;

class StatusNotifierItem final : public MenuBarItem {
    Q_OBJECT

  public:
    StatusNotifierItem();
    ~StatusNotifierItem() override;

    void display(const MenuBarLabel& label) override;

  private:
    void registerWithWatcher();

    const QString busName;
    StatusNotifierAdaptor* adaptor;
    QDBusServiceWatcher watcherOwner;
};

}  // namespace bonkora
