#include "app/desktop/SingleInstance.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "tests/support/StatusNotifierBar.h"

using bonkora::SingleInstance;

namespace {

constexpr char laterStart[] = "--later-start";
constexpr int isFirst = 10;
constexpr int wasAnswered = 11;
constexpr int wasNotAnswered = 12;

// What a later start of the application does, in a process of its own.
int startLater() {
    const SingleInstance instance;
    return instance.isFirst()                ? isFirst
           : SingleInstance::activateFirst() ? wasAnswered
                                             : wasNotAnswered;
}

class Later {
  public:
    Later() { process.start(QCoreApplication::applicationFilePath(), {laterStart}); }
    // Without a session bus, and with that folder for runtime files.
    explicit Later(const QString& runtimeFolder) {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
        environment.insert("XDG_RUNTIME_DIR", runtimeFolder);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {laterStart});
    }

    int status() {
        [this] { QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 10000); }();
        return process.exitCode();
    }

  private:
    QProcess process;
};

}  // namespace

class SingleInstanceTest final : public QObject {
    Q_OBJECT

  private slots:
    void aLaterStartIsNotTheFirstAndMakesTheFirstOpen() {
        SingleInstance first;
        QVERIFY(first.isFirst());
        const QSignalSpy activations(&first, &SingleInstance::activated);
        QCOMPARE(Later().status(), wasAnswered);
        QCOMPARE(activations.count(), 1);
    }

    void desktopsOpenItThroughTheSameDoor() {
        SingleInstance first;
        const QSignalSpy activations(&first, &SingleInstance::activated);
        for (const char* method : {"Activate", "Open", "ActivateAction"}) {
            QDBusMessage call =
                QDBusMessage::createMethodCall("org.bonkora.Bonkora", "/org/bonkora/Bonkora",
                                               "org.freedesktop.Application", method);
            const QVariantMap platformData;
            call.setArguments(QByteArray(method) == "Open"
                                  ? QVariantList{QStringList("file:///tmp"), platformData}
                              : QByteArray(method) == "ActivateAction"
                                  ? QVariantList{"open", QVariantList(), platformData}
                                  : QVariantList{platformData});
            const auto reply = bonkora::test::callAndWait(QDBusConnection::sessionBus(), call);
            QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        }
        QCOMPARE(activations.count(), 3);
    }

    void withoutABusALockFileTellsLaterStartsApart() {
        const QTemporaryDir runtime;
        const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
        {
            bonkora::InstanceLock first;
            QVERIFY(first.take());
            QCOMPARE(Later(runtime.path()).status(), wasNotAnswered);
        }
        QCOMPARE(Later(runtime.path()).status(), isFirst);
        qputenv("XDG_RUNTIME_DIR", before);
    }
};

int main(int argumentCount, char** arguments) {
    QCoreApplication application(argumentCount, arguments);
    if (application.arguments().contains(laterStart)) {
        return startLater();
    }
    SingleInstanceTest test;
    return QTest::qExec(&test, argumentCount, arguments);
}

#include "SingleInstanceTest.moc"
