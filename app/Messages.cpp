#include "app/Messages.h"

#include <QString>
#include <cstdio>

#include "platform/Console.h"

namespace bonkora {

namespace {

void sayOnStandardError(QtMsgType type, const QMessageLogContext&, const QString& message) {
    const QByteArray text = message.toLocal8Bit();
    if (type == QtFatalMsg) {
        platform::fatalError({text.constData(), static_cast<std::size_t>(text.size())});
    }
    std::fprintf(stderr, "%s\n", text.constData());
}

}  // namespace

void sendMessagesToStandardError() {
    qInstallMessageHandler(sayOnStandardError);
}

}  // namespace bonkora
