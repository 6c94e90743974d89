#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <optional>

#include "app/desktop/ManagerWatch.h"
#include "app/desktop/SessionBus.h"
#include "app/item/MenuBarHosts.h"
#include "app/item/StatusNotifierItem.h"
#include "app/item/TrayIconItem.h"

namespace bonkora {

// Whether a bar on the session bus shows status notifier items, and when that changes.
class StatusNotifierWatch final : public QObject {
    Q_OBJECT

  public:
    StatusNotifierWatch();

    // Nothing as long as the answer has not come.
    std::optional<bool> isHostThere() const { return answer; }

  signals:
    void changed();

  private slots:
    void ask();

  private:
    void set(bool isThere);

    QDBusConnection bus;
    QDBusServiceWatcher owner;
    std::optional<bool> answer;
};

StatusNotifierWatch::StatusNotifierWatch() : bus(QDBusConnection::sessionBus()) {
    if (!sessionBus::isAvailable()) {
        answer = false;
        return;
    }
    owner.setConnection(bus);
    owner.addWatchedService(statusNotifierWatcher::service);
    connect(&owner, &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusNotifierWatch::ask);
    for (const char* news : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus.connect(statusNotifierWatcher::service, statusNotifierWatcher::path,
                    statusNotifierWatcher::service, news, this, SLOT(ask()));
    }
    ask();
}

void StatusNotifierWatch::ask() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(statusNotifierWatcher::service, statusNotifierWatcher::path,
                                       "org.freedesktop.DBus.Properties", "Get");
    question << statusNotifierWatcher::service << "IsStatusNotifierHostRegistered";
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

namespace {

// A bar on the session bus is taken before an XEmbed tray.
class DesktopHosts final : public MenuBarHosts {
  public:
    DesktopHosts() {
        connect(&bus, &StatusNotifierWatch::changed, this, [this] { decide(); });
        connect(&tray, &ManagerWatch::changed, this, [this] { decide(); });
        decide();
    }

    std::unique_ptr<MenuBarItem> makeItem() override {
        if (kind() == Kind::statusNotifier) {
            return std::make_unique<StatusNotifierItem>();
        }
        return std::make_unique<TrayIconItem>();
    }

  private:
    void decide() {
        if (const auto isHostThere = bus.isHostThere()) {
            set(*isHostThere                       ? Kind::statusNotifier
                : tray.window() != XCB_WINDOW_NONE ? Kind::platformTray
                                                   : Kind::none);
        }
    }

    StatusNotifierWatch bus;
    ManagerWatch tray{"_NET_SYSTEM_TRAY_S"};  // of the XEmbed kind
};

}  // namespace

std::unique_ptr<MenuBarHosts> MenuBarHosts::make() {
    return std::make_unique<DesktopHosts>();
}

}  // namespace bonkora

#include "MenuBarHosts_linux.moc"
