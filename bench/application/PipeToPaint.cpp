// From the detector's write to the repainted count, against a minimal Qt program that shows a
// pipe's text in a label: both read what a child copies from a named pipe, both are timed from the
// write into that pipe to the paint event of the label that shows it. In turns, as often as asked.
// Figures on standard error, one "name value" a line, in microseconds.
//
// usage: pipe_to_paint FOLDER OURS MINIMAL    (an empty one, and how often each; needs a display)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>

#include "app/QtMainQueue.h"
#include "bridge/SpankWrapper.h"
#include "platform/Descriptor.h"
#include "ui/controls/TextLabel.h"
#include "ui/panel/MenuBarContentView.h"

namespace bonkora {
namespace {

using Clock = std::chrono::steady_clock;

// Waits for the paint of a label that shows the expected text.
class PaintWatch final : public QObject {
  public:
    QString expected;
    std::function<void()> painted;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint && !expected.isEmpty()) {
            const auto* const ours = qobject_cast<bonkora::TextLabel*>(object);
            const auto* const plain = qobject_cast<QLabel*>(object);
            if ((ours != nullptr && ours->text() == expected) ||
                (plain != nullptr && plain->text() == expected)) {
                expected.clear();
                painted();
            }
        }
        return false;
    }
};

// Opened for both directions, so that opening never waits.
platform::UniqueDescriptor namedPipe(const std::string& path) {
    ::mkfifo(path.c_str(), 0600);
    return platform::UniqueDescriptor(::open(path.c_str(), O_RDWR | O_CLOEXEC));
}

// The minimal program: what comes out of the child goes into a label.
class MinimalViewer {
  public:
    explicit MinimalViewer(const std::string& pipePath)
        : child(::popen(("exec cat '" + pipePath + "'").c_str(), "r")),
          notifier(::fileno(child), QSocketNotifier::Read) {
        label.resize(340, 900);
        label.show();
        QObject::connect(&notifier, &QSocketNotifier::activated, &label, [this] {
            std::array<char, 65536> buffer;
            const auto count = ::read(::fileno(child), buffer.data(), buffer.size());
            label.setText(
                QString::fromUtf8(buffer.data(), std::max<int>(static_cast<int>(count), 0))
                    .trimmed());
        });
    }

  private:
    FILE* const child;
    QSocketNotifier notifier;
    QLabel label;
};

class Bench {
  public:
    Bench(const std::string& folder, int timesOurs, int timesMinimal)
        : ours{timesOurs},
          minimalProgram{timesMinimal},
          minimalPipe(namedPipe(folder + "/minimal")),
          ourPipe(namedPipe(folder + "/ours")),
          minimal(folder + "/minimal") {
        std::ofstream(folder + "/spank") << "stands there as the detector";
        auto platform = platform::Platform::real(queue, {folder + "/bonkora", {}});
        platform.runnerPath = [folder] { return folder + "/runner"; };
        std::ofstream(folder + "/runner") << "#!/bin/sh\nexec cat '" << folder << "/ours'\n";
        ::chmod((folder + "/runner").c_str(), 0700);
        wrapper = SpankWrapper::create(platform);
        wrapper->start();
        view = std::make_unique<MenuBarContentView>(*wrapper,
                                                    PanelEnvironment{queue, [] {}, appearance});
        view->resize(340, 900);  // high enough to show the count without scrolling
        view->show();
        qApp->installEventFilter(&watch);
        QTimer::singleShot(500, &watch, [this] { next(); });
    }

  private:
    struct Turns {
        bool isDone() const { return done == wanted; }

        const int wanted;
        int done = 0;
    };

    void next() {
        if (ours.isDone() && minimalProgram.isDone()) {
            QCoreApplication::quit();
            return;
        }
        const bool isOurs =
            minimalProgram.isDone() || (!ours.isDone() && minimalProgram.done > ours.done);
        Turns& turns = isOurs ? ours : minimalProgram;
        const int number = ++turns.done;
        const std::string line = isOurs ? "{\"type\":\"slap\",\"amplitude\":0.5}\n"
                                        : "number " + std::to_string(number) + "\n";
        watch.expected = isOurs ? QString::number(number) : QString("number %1").arg(number);
        watch.painted = [this, isOurs] {
            const std::chrono::duration<double, std::micro> taken = Clock::now() - written;
            std::fprintf(stderr, "%s %.1f\n", isOurs ? "write_to_paint" : "minimal_program",
                         taken.count());
            QTimer::singleShot(10, &watch, [this] { next(); });
        };
        written = Clock::now();
        const int descriptor = (isOurs ? ourPipe : minimalPipe).get();
        if (::write(descriptor, line.data(), line.size()) < 0) {
            std::perror("pipe_to_paint");
            std::_Exit(1);
        }
    }

    Turns ours;
    Turns minimalProgram;
    const platform::UniqueDescriptor minimalPipe;
    const platform::UniqueDescriptor ourPipe;
    MinimalViewer minimal;
    Appearance appearance;
    const std::shared_ptr<QtMainQueue> queue = std::make_shared<QtMainQueue>();
    std::shared_ptr<SpankWrapper> wrapper;
    std::unique_ptr<MenuBarContentView> view;
    PaintWatch watch;
    Clock::time_point written;
};

}  // namespace
}  // namespace bonkora

int main(int argumentCount, char** arguments) {
    bonkora::platform::prepareStandardStreams();
    const QApplication application(argumentCount, arguments);
    if (argumentCount != 4) {
        std::fprintf(stderr, "usage: %s FOLDER OURS MINIMAL\n", arguments[0]);
        return 2;
    }
    QApplication::setStyle("Fusion");
    const bonkora::Bench bench(arguments[1], std::atoi(arguments[2]), std::atoi(arguments[3]));
    const int status = QApplication::exec();
    // The children copy on until their pipes have no writer any more: end with them at once.
    ::kill(0, SIGTERM);
    return status;
}
