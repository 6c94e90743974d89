#ifdef __linux__
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include <QTest>
#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>
#include <utility>

#include "tests/support/TemporaryFolder.h"
#include "ui/state/AppStorage.h"

using bonkora::AppStorage;
using bonkora::test::TemporaryFolder;

namespace {

// The user's configuration, in a folder of the test's own.
struct Configuration {
    TemporaryFolder folder;
    std::string file = folder / "config/Bonkora/Bonkora.conf";

    Configuration() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(folder / "config"));
    }
    void store(const std::string& value) {
        folder.write("config/Bonkora/Bonkora.conf", "[General]\nslapCounterTotal=" + value + "\n");
    }
};

#ifdef __linux__
std::function<void()> beforeTheNextWatch;
#endif

}  // namespace

#ifdef __linux__
// In the C library's place: what happens right before the toolkit watches a folder or a file.
extern "C" int inotify_add_watch(int descriptor, const char* path, std::uint32_t mask) noexcept {
    if (const auto happening = std::exchange(beforeTheNextWatch, nullptr)) {
        happening();
    }
    return static_cast<int>(::syscall(SYS_inotify_add_watch, descriptor, path, mask));
}
#endif

class AppStorageTest final : public QObject {
    Q_OBJECT

  private slots:
    void nothingStoredIsTheInitialValueAndMakesNoFolder() {
        Configuration configuration;
        AppStorage storage("slapCounterTotal", 5);
        QCOMPARE(storage.get(), 5);
        QVERIFY(!std::filesystem::exists(configuration.folder / "config"));
    }

    void aStoredTextReadsAsItsIntegerOrAsZero_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("number");
        QTest::newRow("plain") << "1284" << qint64{1284};
        QTest::newRow("negative") << "-3" << qint64{-3};
        QTest::newRow("largest") << "9223372036854775807" << std::numeric_limits<qint64>::max();
        QTest::newRow("too large") << "9223372036854775808" << qint64{0};
        QTest::newRow("fraction") << "1.5" << qint64{0};
        QTest::newRow("word") << "many" << qint64{0};
        QTest::newRow("list") << "1, 2" << qint64{0};
        QTest::newRow("empty") << "" << qint64{0};
    }
    void aStoredTextReadsAsItsIntegerOrAsZero() {
        QFETCH(QString, text);
        QFETCH(qint64, number);
        Configuration configuration;
        configuration.store(text.toStdString());
        const AppStorage storage("slapCounterTotal", 0);
        QCOMPARE(storage.get(), number);
    }

    void aFileThatIsNoConfigurationReadsAsTheInitialValue() {
        Configuration configuration;
        configuration.folder.write("config/Bonkora/Bonkora.conf", std::string("\0\xff[[=\n\n=", 8));
        AppStorage storage("slapCounterTotal", 5);
        QCOMPARE(storage.get(), 5);
    }

    void everyChangeIsAnnouncedBeforeItIsTaken() {
        Configuration configuration;
        configuration.store("1");
        AppStorage storage("slapCounterTotal", 0);
        std::vector<std::int64_t> announced;
        const auto subscription =
            storage.objectWillChange.sink([&] { announced.push_back(storage.get()); });
        configuration.store("22");
        QTRY_COMPARE_WITH_TIMEOUT(storage.get(), 22, 1000);
        QCOMPARE(announced, std::vector<std::int64_t>{1});
    }

    void aFolderMadeLaterIsFollowed() {
        Configuration configuration;
        AppStorage storage("slapCounterTotal", 0);
        configuration.store("7");
        QTRY_COMPARE_WITH_TIMEOUT(storage.get(), 7, 1000);
        // Of another length: QSettings tells a new file by its time and size, and the first tick of
        // the file system's clock may not be over yet.
        configuration.store("88");
        QTRY_COMPARE_WITH_TIMEOUT(storage.get(), 88, 1000);
    }

    // Made one after the other by another thread, while this one goes from folder to folder.
#ifdef __linux__
    void aFolderMadeBetweenTheSearchForItAndTheWatchIsFollowed() {
        Configuration configuration;
        beforeTheNextWatch = [&] {
            std::filesystem::create_directory(configuration.folder / "config");
        };
        AppStorage storage("slapCounterTotal", 0);
        QVERIFY(std::filesystem::exists(configuration.folder / "config"));
        configuration.store("7");
        QTRY_COMPARE_WITH_TIMEOUT(storage.get(), 7, 1000);
    }
#endif

    void foldersMadeWhileTheirParentsAreLookedForAreFollowed() {
        for (int round = 0; round < 60; ++round) {
            Configuration configuration;
            AppStorage storage("slapCounterTotal", 0);
            std::thread maker([&] {
                std::filesystem::create_directory(configuration.folder / "config");
                const auto pause = std::chrono::microseconds(20 * round);
                const auto until = std::chrono::steady_clock::now() + pause;
                while (std::chrono::steady_clock::now() < until) {
                }
                configuration.store("7");
            });
            QTest::qWait(1);
            maker.join();
            QTRY_COMPARE_WITH_TIMEOUT(storage.get(), 7, 1000);
        }
    }

    void aFileReplacedByAnotherIsFollowed() {
        Configuration configuration;
        configuration.store("1");
        AppStorage storage("slapCounterTotal", 0);
        for (int number = 10; number < 100'000; number *= 10) {
            const std::string fresh = configuration.folder.write(
                "config/Bonkora/fresh",
                "[General]\nslapCounterTotal=" + std::to_string(number) + "\n");
            std::filesystem::rename(fresh, configuration.file);
            QTRY_COMPARE_WITH_TIMEOUT(storage.get(), number, 1000);
        }
    }

    void aFileTakenAwayReadsAsTheInitialValueAgain() {
        Configuration configuration;
        configuration.store("9");
        AppStorage storage("slapCounterTotal", 0);
        std::filesystem::remove_all(configuration.folder / "config");
        QTRY_COMPARE_WITH_TIMEOUT(storage.get(), 0, 1000);
        configuration.store("10");
        QTRY_COMPARE_WITH_TIMEOUT(storage.get(), 10, 1000);
    }

    void twoStoragesOfOneKeyAgree() {
        Configuration configuration;
        AppStorage label("slapCounterTotal", 0);
        AppStorage panel("slapCounterTotal", 0);
        configuration.store("3");
        QTRY_COMPARE_WITH_TIMEOUT(label.get(), 3, 1000);
        QTRY_COMPARE_WITH_TIMEOUT(panel.get(), 3, 1000);
    }
};

QTEST_GUILESS_MAIN(AppStorageTest)
#include "AppStorageTest.moc"
