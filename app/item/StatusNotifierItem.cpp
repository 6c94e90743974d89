#include "app/item/StatusNotifierItem.h"

#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QtEndian>

#include "app/desktop/XSettings.h"
#include "app/item/LabelIcon.h"
#include "app/item/OpenMenu.h"
#include "app/item/StatusNotifierTypes.h"

namespace bonkora {

namespace {

const QString itemPath = "/StatusNotifierItem";
constexpr int iconSizes[] = {22, 24, 32, 48};

IconPixmap pixmapOf(const QImage& drawing) {
    QImage image = drawing.convertToFormat(QImage::Format_ARGB32);
    IconPixmap icon{image.width(), image.height(), {}};
    icon.pixels.resize(image.sizeInBytes());
    qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / 4, icon.pixels.data());
    return icon;
}

}  // namespace

// What the item says and answers on the session bus, in the names that bars expect.
class StatusNotifierAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title NOTIFY NewTitle)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ noName CONSTANT)
    Q_PROPERTY(bonkora::IconPixmaps IconPixmap READ iconPixmap NOTIFY NewIcon)
    Q_PROPERTY(QString OverlayIconName READ noName CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ noName CONSTANT)
    Q_PROPERTY(bonkora::ToolTip ToolTip READ toolTip NOTIFY NewToolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)
    Q_PROPERTY(QString XAyatanaLabel READ ayatanaLabel NOTIFY XAyatanaNewLabel)
    Q_PROPERTY(QString XAyatanaLabelGuide READ ayatanaLabel NOTIFY XAyatanaNewLabel)

  public:
    static constexpr char menuPath[] = "/MenuBar";

    explicit StatusNotifierAdaptor(MenuBarItem& item);

    // Tells the bars what differs.
    void display(const MenuBarLabel& label);

    QString category() const { return "ApplicationStatus"; }
    QString id() const { return "Bonkora"; }
    QString title() const { return label.title; }
    QString status() const { return "Active"; }
    int windowId() const { return 0; }
    QString noName() const { return {}; }
    IconPixmaps iconPixmap() const;
    ToolTip toolTip() const { return {{}, {}, label.title, {}}; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(menuPath); }
    QString ayatanaLabel() const;

  public slots:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);

  signals:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void XAyatanaNewLabel(const QString& text, const QString& guide);

  private:
    MenuBarItem& item;
    MenuBarLabel label{};
};

StatusNotifierAdaptor::StatusNotifierAdaptor(MenuBarItem& theItem)
    : QDBusAbstractAdaptor(&theItem), item(theItem) {
    registerStatusNotifierTypes();
}

void StatusNotifierAdaptor::display(const MenuBarLabel& newLabel) {
    const MenuBarLabel old = std::exchange(label, newLabel);
    if (label.symbol != old.symbol) {
        emit NewIcon();
    }
    if (label.title != old.title) {
        emit NewTitle();
        emit NewToolTip();
        emit XAyatanaNewLabel(ayatanaLabel(), ayatanaLabel());
    }
}

IconPixmaps StatusNotifierAdaptor::iconPixmap() const {
    IconPixmaps icons;
    for (const int size : iconSizes) {
        icons.append(pixmapOf(labelIcon::outlined(label.symbol, size)));
    }
    return icons;
}

QString StatusNotifierAdaptor::ayatanaLabel() const {
    // MATE's panel makes a button of the two, which drops the icon where buttons are to have none
    // beside a text. Then the symbol goes into the label.
    const bool replacesIcon = qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains("MATE") &&
                              !xSettings::asksForButtonImages(xSettings::read());
    return replacesIcon ? QStringLiteral("✋ ") + label.title : label.title;
}

void StatusNotifierAdaptor::Activate(int x, int y) {
    emit item.clicked({x, y});
}

void StatusNotifierAdaptor::SecondaryActivate(int x, int y) {
    emit item.clicked({x, y});
}

void StatusNotifierAdaptor::ContextMenu(int x, int y) {
    emit item.clicked({x, y});
}

void StatusNotifierAdaptor::Scroll(int, const QString&) {}

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
    watcherOwner.addWatchedService(statusNotifierWatcher::service);
    connect(&watcherOwner, &QDBusServiceWatcher::serviceRegistered, this,
            &StatusNotifierItem::registerWithWatcher);
}

StatusNotifierItem::~StatusNotifierItem() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(busName);
    bus.unregisterObject(itemPath);
    bus.unregisterObject(StatusNotifierAdaptor::menuPath);
}

void StatusNotifierItem::display(const MenuBarLabel& label) {
    const bool isFirst = adaptor->title().isEmpty();
    adaptor->display(label);
    if (isFirst) {
        registerWithWatcher();
    }
}

void StatusNotifierItem::registerWithWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        statusNotifierWatcher::service, statusNotifierWatcher::path, statusNotifierWatcher::service,
        "RegisterStatusNotifierItem");
    // By object path, not by the well-known name: GNOME's AppIndicator extension watches such a
    // name, and its first answer wipes what it had read of the item by then.
    call << itemPath;
    call.setAutoStartService(false);
    QDBusConnection::sessionBus().send(call);
}

}  // namespace bonkora

#include "StatusNotifierItem.moc"
