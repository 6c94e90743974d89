#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

#include "app/desktop/DesktopAppearance.h"
#include "app/desktop/SessionBus.h"
#include "app/desktop/XSettings.h"

namespace bonkora {

namespace {

const QString service = "org.freedesktop.portal.Desktop";
const QString portalPath = "/org/freedesktop/portal/desktop";
const QString interface = "org.freedesktop.portal.Settings";
// Desktops say in three ways that things are not to move.
const QString appearanceSpace = "org.freedesktop.appearance";
const QString colorScheme = "color-scheme";
const QString reducedMotion = "reduced-motion";
const QString gnomeSpace = "org.gnome.desktop.interface";
const QString enableAnimations = "enable-animations";
const QString kdeSpace = "org.kde.kdeglobals.KDE";
const QString animationDurationFactor = "AnimationDurationFactor";
const std::pair<QString, QString> settings[] = {{appearanceSpace, colorScheme},
                                                {appearanceSpace, reducedMotion},
                                                {gnomeSpace, enableAnimations},
                                                {kdeSpace, animationDurationFactor}};

constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;
constexpr uint prefersReducedMotion = 1;

// What is asked for comes wrapped once more than what is announced.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace

// What the desktop portal says about light and dark and about motion, at first and whenever it
// changes. Silent where there is no portal.
class AppearancePortal final : public QObject {
    Q_OBJECT

  public:
    AppearancePortal();

  signals:
    // Nothing for "no preference".
    void answered(std::optional<bool> isDark);
    void motionAnswered(const QString& setting, bool isReduced);

  private slots:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);

  private:
    void ask(const QString& space, const QString& key);
    void report(const QString& space, const QString& key, const QVariant& value);
};

AppearancePortal::AppearancePortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    // QtDBus learns how QDBusVariant is written only when it is asked, and refuses a slot that
    // takes one before that.
    QDBusMetaType::typeToSignature(QMetaType::fromType<QDBusVariant>());
    if (!bus.connect(service, portalPath, interface, "SettingChanged", this,
                     SLOT(settingChanged(QString, QString, QDBusVariant)))) {
        qWarning("bonkora: changes between light and dark will not be heard");
    }
    for (const auto& [space, key] : settings) {
        ask(space, key);
    }
}

void AppearancePortal::ask(const QString& space, const QString& key) {
    QDBusMessage question = QDBusMessage::createMethodCall(service, portalPath, interface, "Read");
    question << space << key;
    auto* call =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, space, key] {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (!reply.isError()) {
            report(space, key, reply.value().variant());
        }
        call->deleteLater();
    });
}

void AppearancePortal::settingChanged(const QString& space, const QString& key,
                                      const QDBusVariant& value) {
    report(space, key, value.variant());
}

void AppearancePortal::report(const QString& space, const QString& key, const QVariant& wrapped) {
    const QVariant value = unwrapped(wrapped);
    if (space == appearanceSpace && key == colorScheme) {
        const uint scheme = value.toUInt();
        emit answered(scheme == prefersDark    ? std::optional(true)
                      : scheme == prefersLight ? std::optional(false)
                                               : std::nullopt);
    } else if (space == appearanceSpace && key == reducedMotion) {
        emit motionAnswered(key, value.toUInt() == prefersReducedMotion);
    } else if (space == gnomeSpace && key == enableAnimations) {
        emit motionAnswered(key, !value.toBool());
    } else if (space == kdeSpace && key == animationDurationFactor) {
        bool isNumber = false;
        const double factor = value.toDouble(&isNumber);
        emit motionAnswered(key, isNumber && factor == 0.0);
    }
}

// The two sources on a Linux desktop: the portal, which knows the user's wish itself, before the
// theme that X desktops tell their programs of.
class DesktopSources final : public QObject {
  public:
    explicit DesktopSources(DesktopAppearance& theReceiver) : receiver(theReceiver) {
        connect(&xSettings, &XSettingsWatch::changed, this, [this] { tell(); });
        if (sessionBus::isAvailable()) {
            connect(&portal.emplace(), &AppearancePortal::answered, this,
                    [this](std::optional<bool> isDark) {
                        byPortal = isDark;
                        tell();
                    });
            connect(&*portal, &AppearancePortal::motionAnswered, &receiver,
                    &DesktopAppearance::reduceMotion);
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
    return std::make_unique<DesktopSources>(receiver);
}

}  // namespace bonkora

#include "DesktopAppearance_linux.moc"
