#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <optional>
#include <string>

#include "app/desktop/SessionBus.h"
#include "app/desktop/X11.h"
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

// Whether an XEmbed tray is on the screen, and when that changes.
class TrayManagerWatch final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

  public:
    TrayManagerWatch();
    ~TrayManagerWatch() override;

    bool isThere() const { return manager != XCB_WINDOW_NONE; }

  signals:
    void changed();

  private:
    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
    void look();

    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t managerMessage = XCB_ATOM_NONE;
    xcb_window_t manager = XCB_WINDOW_NONE;
};

TrayManagerWatch::TrayManagerWatch() {
    if (x11::connection() == nullptr) {
        return;
    }
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(x11::screenNumber());
    selection = x11::atom(name.c_str());
    managerMessage = x11::atom("MANAGER");
    look();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

TrayManagerWatch::~TrayManagerWatch() {
    if (auto* application = QCoreApplication::instance()) {
        application->removeNativeEventFilter(this);
    }
}

void TrayManagerWatch::look() {
    manager = x11::selectionOwner(selection);
    if (manager != XCB_WINDOW_NONE) {
        // To hear of its end.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(x11::connection(), manager, XCB_CW_EVENT_MASK, &mask);
    }
}

bool TrayManagerWatch::nativeEventFilter(const QByteArray& kind, void* message, qintptr*) {
    if (kind != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7F;
    const bool hasCome =
        type == XCB_CLIENT_MESSAGE &&
        static_cast<const xcb_client_message_event_t*>(message)->type == managerMessage;
    const bool hasGone = type == XCB_DESTROY_NOTIFY &&
                         static_cast<const xcb_destroy_notify_event_t*>(message)->window == manager;
    if (hasCome || hasGone) {
        look();
        emit changed();
    }
    return false;
}

namespace {

// A bar on the session bus is taken before an XEmbed tray.
class DesktopHosts final : public MenuBarHosts {
  public:
    DesktopHosts() {
        connect(&bus, &StatusNotifierWatch::changed, this, [this] { decide(); });
        connect(&tray, &TrayManagerWatch::changed, this, [this] { decide(); });
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
            set(*isHostThere     ? Kind::statusNotifier
                : tray.isThere() ? Kind::platformTray
                                 : Kind::none);
        }
    }

    StatusNotifierWatch bus;
    TrayManagerWatch tray;
};

}  // namespace

std::unique_ptr<MenuBarHosts> MenuBarHosts::make() {
    return std::make_unique<DesktopHosts>();
}

}  // namespace bonkora

#include "MenuBarHosts_linux.moc"
