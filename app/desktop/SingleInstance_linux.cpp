#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>
#include <optional>

#include "app/desktop/SessionBus.h"
#include "app/desktop/SingleInstance.h"

namespace bonkora {

namespace {

const QString busName = "org.bonkora.Bonkora";
const QString objectPath = "/org/bonkora/Bonkora";
constexpr int answerMilliseconds = 5000;

}  // namespace

// The object on the session bus through which desktops and later starts open the panel.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit ApplicationAdaptor(QObject& holder) : QDBusAbstractAdaptor(&holder) {}

  public slots:
    void Activate(const QVariantMap&) { emit activated(); }
    void Open(const QStringList&, const QVariantMap&) { emit activated(); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap&) {
        emit activated();
    }

  signals:
    void activated();
};

struct SingleInstance::Hold {
    std::optional<InstanceLock> lock;  // where there is no bus
};

SingleInstance::SingleInstance() : hold(std::make_unique<Hold>()) {
    if (!sessionBus::isAvailable()) {
        first = hold->lock.emplace().take();
        return;
    }
    auto* adaptor = new ApplicationAdaptor(*this);
    connect(adaptor, &ApplicationAdaptor::activated, this, &SingleInstance::activated);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    first = bus.registerService(busName);
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::activateFirst() {
    if (!sessionBus::isAvailable()) {
        return false;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath,
                                                       "org.freedesktop.Application", "Activate");
    call << QVariantMap();
    const QDBusMessage reply =
        QDBusConnection::sessionBus().call(call, QDBus::Block, answerMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

}  // namespace bonkora

#include "SingleInstance_linux.moc"
