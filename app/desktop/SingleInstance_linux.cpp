#include <QDBusConnection>
#include <QDBusMessage>
#include <optional>

#include "app/desktop/ApplicationAdaptor.h"
#include "app/desktop/InstanceLock.h"
#include "app/desktop/SessionBus.h"
#include "app/desktop/SingleInstance.h"

namespace bonkora {

namespace {

const QString busName = "org.bonkora.Bonkora";
const QString objectPath = "/org/bonkora/Bonkora";
constexpr int answerMilliseconds = 5000;

}  // namespace

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
