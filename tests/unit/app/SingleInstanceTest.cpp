#include "app/desktop/SingleInstance.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

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

// An environment variable, for as long as this lives.
class Variable {
  public:
    Variable(const char* theName, const QString& value) : name(theName), before(qgetenv(theName)) {
        qputenv(name, value.toLocal8Bit());
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { qputenv(name, before); }

  private:
    const char* const name;
    const QByteArray before;
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

    void withoutABusALockTellsLaterStartsApart() {
        const QTemporaryDir runtime;
        const Variable variable("XDG_RUNTIME_DIR", runtime.path());
        {
            bonkora::InstanceLock first;
            QVERIFY(first.take());
            QCOMPARE(Later(runtime.path()).status(), wasNotAnswered);
        }
        QCOMPARE(Later(runtime.path()).status(), isFirst);
    }

    void withoutARuntimeFolderTheLockLiesWhereNobodyElseCanTakeIt() {
        const QTemporaryDir home;
        const QTemporaryDir shared;
        const Variable caches("XDG_CACHE_HOME", home.path());
        const Variable temporary("TMPDIR", shared.path());
        const Variable runtime("XDG_RUNTIME_DIR", "");
        bonkora::InstanceLock first;
        QVERIFY(first.take());
        QCOMPARE(Later("").status(), wasNotAnswered);
        QCOMPARE(QDir(shared.path()).entryList(QDir::Files).size(), 0);
        const QFile::Permissions mode = QFileInfo(home.filePath("Bonkora")).permissions();
        QVERIFY(mode.testFlag(QFile::WriteOwner));
        QVERIFY((mode & (QFile::WriteGroup | QFile::WriteOther | QFile::ReadOther)) == 0);
    }

    void aRuntimeFolderThatOthersMayWriteToHoldsNoLock() {
        const QTemporaryDir home;
        const QTemporaryDir shared;
        QFile::setPermissions(shared.path(), QFile::Permissions(0x7777));
        const Variable caches("XDG_CACHE_HOME", home.path());
        const Variable runtime("XDG_RUNTIME_DIR", shared.path());
        bonkora::InstanceLock first;
        QVERIFY(first.take());
        QCOMPARE(Later(shared.path()).status(), wasNotAnswered);
        QVERIFY(QDir(shared.path()).isEmpty());
    }

    void whatStandsInTheLocksPlaceCostsTheLockAndNeverTheStart() {
        const QTemporaryDir elsewhere;
        const auto startsWith = [&](const std::function<void(const QString&)>& prepare) {
            const QTemporaryDir runtime;
            const Variable variable("XDG_RUNTIME_DIR", runtime.path());
            {
                bonkora::InstanceLock lock;  // to learn its name
                lock.take();
            }
            const QStringList names = QDir(runtime.path()).entryList(QDir::Files);
            QCOMPARE(names.size(), 1);
            const QString path = runtime.filePath(names.first());
            QFile::remove(path);
            prepare(path);
            QCOMPARE(Later(runtime.path()).status(), isFirst);
        };
        startsWith([](const QString& path) { QDir().mkdir(path); });
        startsWith([&](const QString& path) { QFile::link(elsewhere.filePath("gone"), path); });
        startsWith([&](const QString& path) { QFile::link(elsewhere.path(), path); });
        startsWith([](const QString& path) { ::mkfifo(qPrintable(path), 0600); });
        startsWith([](const QString& path) {
            // Another user's, and held: only root can make it so.
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("1\nbonkora\nhere\n");
            (void)!::chown(qPrintable(path), 65534, 65534);
        });
        QVERIFY(QDir(elsewhere.path()).isEmpty());
    }

    void aFolderThatCannotBeMadeCostsTheLockAndNeverTheStart() {
        const Variable caches("XDG_CACHE_HOME", "/proc/none");
        QCOMPARE(Later("").status(), isFirst);
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
