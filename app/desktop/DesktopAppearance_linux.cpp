#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "app/desktop/DesktopAppearance.h"
#include "app/desktop/SessionBus.h"
#include "app/desktop/XSettings.h"

namespace bonkora {

namespace {

const QString service = "org.freedesktop.portal.Desktop";
const QString path = "/org/freedesktop/portal/desktop";
const QString interface = "org.freedesktop.portal.Settings";
const QString settingSpace = "org.freedesktop.appearance";
const QString settingKey = "color-scheme";

constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

}  // namespace

// What the desktop portal says about light and dark, at first and whenever it changes. Silent where
// there is no portal.
class AppearancePortal final : public QObject {
    Q_OBJECT

  public:
    AppearancePortal();

  signals:
    // Nothing for "no preference".
    void answered(std::optional<bool> isDark);

  private slots:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);

  private:
    void report(const QVariant& value);
};

AppearancePortal::AppearancePortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The bus library knows its own types only once they were asked for, and refuses the slot else.
    QDBusMetaType::typeToSignature(QMetaType::fromType<QDBusVariant>());
    if (!bus.connect(service, path, interface, "SettingChanged", this,
                     SLOT(settingChanged(QString, QString, QDBusVariant)))) {
        qWarning("bonkora: changes between light and dark will not be heard");
    }
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, "Read");
    question << settingSpace << settingKey;
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (!reply.isError()) {
            report(reply.value().variant());
        }
        call->deleteLater();
    });
}

void AppearancePortal::settingChanged(const QString& space, const QString& key,
                                      const QDBusVariant& value) {
    if (space == settingSpace && key == settingKey) {
        report(value.variant());
    }
}

void AppearancePortal::report(const QVariant& value) {
    // The first answer comes wrapped once more.
    const QVariant inner =
        value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    const uint scheme = inner.toUInt();
    emit answered(scheme == prefersDark    ? std::optional(true)
                  : scheme == prefersLight ? std::optional(false)
                                           : std::nullopt);
}

// The two voices of a Linux desktop: the portal, which knows the user's wish itself, before the
// theme that X desktops tell their programs of.
class DesktopVoices final : public QObject {
  public:
    explicit DesktopVoices(DesktopAppearance& theReceiver) : receiver(theReceiver) {
        connect(&xSettings, &XSettingsWatch::changed, this, [this] { tell(); });
        if (sessionBus::isAvailable()) {
            connect(&portal.emplace(), &AppearancePortal::answered, this,
                    [this](std::optional<bool> isDark) {
                        byPortal = isDark;
                        tell();
                    });
        }
        // Once the receiver is whole.
        QMetaObject::invokeMethod(
            this, [this] { tell(); }, Qt::QueuedConnection);
    }

  private:
    void tell() { receiver.prefer(byPortal ? byPortal : xSettings.isDark()); }

    DesktopAppearance& receiver;
    XSettingsWatch xSettings;
    std::optional<AppearancePortal> portal;
    std::optional<bool> byPortal;
};

std::unique_ptr<QObject> DesktopAppearance::makeSource(DesktopAppearance& receiver) {
    return std::make_unique<DesktopVoices>(receiver);
}

}  // namespace bonkora

#include "DesktopAppearance_linux.moc"
