// A bar that shows status notifier items, reduced to what the session bus sees of it: the watcher
// with which items register, on a connection of its own as if it were another program.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <QStringList>

namespace bonkora::test {

// Sends a call as another program would, and lets the event loop answer it.
inline QDBusMessage callAndWait(const QDBusConnection& bus, const QDBusMessage& call) {
    const QDBusPendingCallWatcher pending(bus.asyncCall(call));
    QEventLoop loop;
    QObject::connect(&pending, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return pending.reply();
}

class StatusNotifierBar final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

  public:
    // Without a host, a watcher has nobody to show items.
    explicit StatusNotifierBar(bool withHost = true)
        : bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName)),
          isHostThere(withHost) {
        bus.registerObject("/StatusNotifierWatcher", this,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        bus.registerService("org.kde.StatusNotifierWatcher");
    }
    ~StatusNotifierBar() override { QDBusConnection::disconnectFromBus(connectionName); }

    bool hasHost() const { return isHostThere; }
    void setHost(bool isThere) {
        isHostThere = isThere;
        bus.send(QDBusMessage::createSignal(
            "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
            isThere ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered"));
    }

    // A property of an item, as the bar reads it.
    QVariant itemProperty(const QString& service, const QString& name) const {
        QDBusMessage call = QDBusMessage::createMethodCall(
            service, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get");
        call << "org.kde.StatusNotifierItem" << name;
        const QDBusMessage reply = callAndWait(bus, call);
        return reply.arguments().isEmpty()
                   ? QVariant()
                   : reply.arguments().first().value<QDBusVariant>().variant();
    }
    QDBusMessage call(const QString& service, const QString& path, const QString& interface,
                      const QString& method, const QVariantList& arguments) const {
        QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
        call.setArguments(arguments);
        return callAndWait(bus, call);
    }

    QDBusConnection bus;
    QStringList items;    // as they registered
    QStringList senders;  // the connections that registered them

  public slots:
    void RegisterStatusNotifierItem(const QString& item) {
        items << item;
        senders << message().service();
    }

  private:
    static constexpr char connectionName[] = "bar";

    bool isHostThere;
};

}  // namespace bonkora::test
