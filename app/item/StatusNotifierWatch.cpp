#include "app/item/StatusNotifierWatch.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "app/desktop/SessionBus.h"

namespace bonkora {

const QString StatusNotifierWatch::serviceName = "org.kde.StatusNotifierWatcher";
const QString StatusNotifierWatch::objectPath = "/StatusNotifierWatcher";

StatusNotifierWatch::StatusNotifierWatch() : bus(QDBusConnection::sessionBus()) {
    if (!sessionBus::isAvailable()) {
        answer = false;
        return;
    }
    owner.setConnection(bus);
    owner.addWatchedService(serviceName);
    connect(&owner, &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusNotifierWatch::ask);
    for (const char* news : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus.connect(serviceName, objectPath, serviceName, news, this, SLOT(ask()));
    }
    ask();
}

void StatusNotifierWatch::ask() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        serviceName, objectPath, "org.freedesktop.DBus.Properties", "Get");
    question << serviceName << "IsStatusNotifierHostRegistered";
    question.setAutoStartService(false);
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        set(!reply.isError() && reply.value().variant().toBool());
        call->deleteLater();
    });
}

void StatusNotifierWatch::set(bool isThere) {
    if (answer != isThere) {
        answer = isThere;
        emit changed();
    }
}

}  // namespace bonkora
