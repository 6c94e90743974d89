#include "app/item/StatusNotifierItem.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>

#include "app/item/OpenMenu.h"
#include "app/item/StatusNotifierAdaptor.h"
#include "app/item/StatusNotifierWatch.h"

namespace bonkora {

namespace {

const QString itemPath = "/StatusNotifierItem";

}  // namespace

StatusNotifierItem::StatusNotifierItem()
    : busName(QString("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid())),
      adaptor(new StatusNotifierAdaptor(*this)) {
    auto* menu = new QObject(this);
    new OpenMenu(*menu, *this);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(itemPath, this, QDBusConnection::ExportAdaptors);
    bus.registerObject(StatusNotifierAdaptor::menuPath, menu, QDBusConnection::ExportAdaptors);
    bus.registerService(busName);

    watcherOwner.setConnection(bus);
    watcherOwner.addWatchedService(StatusNotifierWatch::serviceName);
    connect(&watcherOwner, &QDBusServiceWatcher::serviceRegistered, this,
            &StatusNotifierItem::registerWithWatcher);
}

StatusNotifierItem::~StatusNotifierItem() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(busName);
    bus.unregisterObject(itemPath);
    bus.unregisterObject(StatusNotifierAdaptor::menuPath);
}

void StatusNotifierItem::show(const MenuBarLabel& label) {
    const bool isFirst = adaptor->title().isEmpty();
    adaptor->show(label);
    if (isFirst) {
        registerWithWatcher();
    }
}

void StatusNotifierItem::registerWithWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        StatusNotifierWatch::serviceName, StatusNotifierWatch::objectPath,
        StatusNotifierWatch::serviceName, "RegisterStatusNotifierItem");
    call << busName;
    call.setAutoStartService(false);
    QDBusConnection::sessionBus().send(call);
}

}  // namespace bonkora
