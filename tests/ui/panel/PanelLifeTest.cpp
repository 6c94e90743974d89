#include <malloc.h>
#include <sys/resource.h>

#include <filesystem>
#include <fstream>

#include "app/window/PanelWindow.h"
#include "tests/support/Panel.h"

using bonkora::test::Panel;

namespace {

constexpr int openings = 500;
// The sanitizer keeps what was freed; it finds leaks by itself.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool memoryTells = false;
#else
constexpr bool memoryTells = true;
#endif

std::size_t descriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

// In KiB: what the process has written to and could not give back.
long privateMemory() {
    malloc_trim(0);
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string word; rollup >> word;) {
        if (word == "Private_Dirty:") {
            long kilobytes = 0;
            rollup >> kilobytes;
            return kilobytes;
        }
    }
    return -1;
}

void openAndClose(Panel& panel) {
    const QPointer<bonkora::PanelWindow> window = new bonkora::PanelWindow(
        std::make_unique<bonkora::MenuBarContentView>(*panel.controller, panel.environment()),
        bonkora::PanelWindow::Style::dropDown);
    window->open({0, 0, 340, 520});
    Panel::settle();
    window->close();
    QCoreApplication::sendPostedEvents(window, QEvent::DeferredDelete);
    Panel::settle();
    QVERIFY(!window);
}

}  // namespace

class PanelLifeTest final : public QObject {
    Q_OBJECT

  private slots:
    void openingAndClosingFiveHundredTimesLeavesEverythingFlat() {
        Panel panel;
        for (int warming = 0; warming < 50; ++warming) {
            openAndClose(panel);
        }
        const std::size_t descriptorsBefore = descriptors();
        const qsizetype widgetsBefore = QApplication::allWidgets().size();
        const long memoryBefore = privateMemory();
        for (int opening = 0; opening < openings; ++opening) {
            openAndClose(panel);
        }
        QCOMPARE(descriptors(), descriptorsBefore);
        QCOMPARE(QApplication::allWidgets().size(), widgetsBefore);
        const long growth = privateMemory() - memoryBefore;
        // Less than one KiB an opening: a panel kept would be hundreds.
        if (memoryTells) {
            QVERIFY2(growth < openings, qPrintable(QString("%1 KiB").arg(growth)));
        }
        qInfo("memory grew by %ld KiB over %d openings", growth, openings);
    }

    void aClosedPanelHearsNothing() {
        Panel panel;
        panel.open();
        panel.close();
        panel.controller->slapCount = 5;
        panel.appearance.setDark(true);
        panel.settle();
        QCOMPARE(QApplication::allWidgets().size(), qsizetype{0});
    }
};

QTEST_MAIN(PanelLifeTest)
#include "PanelLifeTest.moc"
