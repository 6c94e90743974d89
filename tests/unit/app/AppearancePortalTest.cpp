#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QMap>
#include <QTest>
#include <utility>

#include "app/desktop/DesktopAppearance.h"
#include "ui/drawing/Colors.h"

using bonkora::Appearance;
using bonkora::DesktopAppearance;

namespace {

const QString appearanceSpace = "org.freedesktop.appearance";
const QString gnomeSpace = "org.gnome.desktop.interface";
const QString kdeSpace = "org.kde.kdeglobals.KDE";

}  // namespace

// The desktop portal's settings, on a connection of its own as if it were another program.
class Portal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    Portal() : bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal")) {
        bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
        bus.registerService("org.freedesktop.portal.Desktop");
    }
    ~Portal() override { QDBusConnection::disconnectFromBus("portal"); }

    void announce(const QString& space, const QString& key, const QVariant& value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(path, "org.freedesktop.portal.Settings", "SettingChanged");
        signal << space << key << QVariant::fromValue(QDBusVariant(value));
        bus.send(signal);
    }

    QMap<std::pair<QString, QString>, QVariant> values;

  public slots:
    // As portals do: the value, in a variant, in a variant.
    QDBusVariant Read(const QString& space, const QString& key) {
        const auto value = values.find({space, key});
        if (value == values.end()) {
            sendErrorReply("org.freedesktop.portal.Error.NotFound", "not here");
            return {};
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(*value)));
    }

  private:
    static constexpr char path[] = "/org/freedesktop/portal/desktop";

    QDBusConnection bus;
};

class AppearancePortalTest final : public QObject {
    Q_OBJECT

  private slots:
    void lessMotionIsAskedForInEachDesktopsWords_data() {
        QTest::addColumn<QString>("space");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("less");
        QTest::addColumn<QVariant>("asUsual");
        QTest::addRow("portal") << appearanceSpace << "reduced-motion" << QVariant(1U)
                                << QVariant(0U);
        QTest::addRow("GNOME") << gnomeSpace << "enable-animations" << QVariant(false)
                               << QVariant(true);
        QTest::addRow("KDE") << kdeSpace << "AnimationDurationFactor" << QVariant("0")
                             << QVariant("1.0");
    }
    void lessMotionIsAskedForInEachDesktopsWords() {
        QFETCH(QString, space);
        QFETCH(QString, key);
        QFETCH(QVariant, less);
        QFETCH(QVariant, asUsual);
        Portal portal;
        portal.values[{space, key}] = less;
        Appearance appearance;
        const DesktopAppearance desktop(appearance, bonkora::applicationPalette);
        QVERIFY(!appearance.isMotionReduced());
        QTRY_VERIFY(appearance.isMotionReduced());
        portal.announce(space, key, asUsual);
        QTRY_VERIFY(!appearance.isMotionReduced());
        portal.announce(space, key, less);
        QTRY_VERIFY(appearance.isMotionReduced());
    }

    void lightAndDarkAreFollowed() {
        Portal portal;
        portal.values[{appearanceSpace, "color-scheme"}] = 1U;
        Appearance appearance;
        const DesktopAppearance desktop(appearance, bonkora::applicationPalette);
        QTRY_VERIFY(appearance.isDark());
        portal.announce(appearanceSpace, "color-scheme", 2U);
        QTRY_VERIFY(!appearance.isDark());
        QVERIFY(!appearance.isMotionReduced());
    }
};

QTEST_MAIN(AppearancePortalTest)
#include "AppearancePortalTest.moc"
