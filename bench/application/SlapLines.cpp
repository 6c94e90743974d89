// A million slap lines on their whole way: a real child writes them to a real pipe, the controller
// counts each and prints its console line to standard output; against the JSON reader alone on the
// same lines; five times, in turns. Then ten times a million, one child after another, for the
// memory that a session of ten million leaves behind. Figures on standard error, one "name value" a
// line, times in seconds of the processor.
//
// usage: slap_lines FOLDER [LINES [ROADS READERS]]
// FOLDER is an empty one; the lines are written into it. With the last two arguments it goes each
// of the two ways that often and does nothing else, so that their instructions can be counted.
#include <malloc.h>
#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/QtMainQueue.h"
#include "bridge/SpankWrapper.h"
#include "platform/Descriptor.h"
#include "platform/JsonReader.h"

namespace bonkora {
namespace {

int lines = 1'000'000;
constexpr int turns = 5;

// Of the processor, all threads and the kernel's work for them included: what the wall's clock says
// depends on whatever else the machine does.
double secondsSoFar() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::string line(int number) {
    return R"({"type":"slap","amplitude":0.)" + std::to_string(1000 + number % 9000) + "}";
}

std::vector<std::string> allLines() {
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(lines));
    for (int number = 0; number < lines; ++number) {
        texts.push_back(line(number));
    }
    return texts;
}

double jsonReaderAlone(const std::vector<std::string>& texts) {
    const double start = secondsSoFar();
    std::size_t keys = 0;
    for (const std::string& text : texts) {
        keys += platform::readJsonObject(text)->size();
    }
    const double seconds = secondsSoFar() - start;
    if (keys != 2 * texts.size()) {
        std::fprintf(stderr, "the reader lost a key\n");
        std::_Exit(1);
    }
    return seconds;
}

// What this process keeps in memory. A file comes faster than it can be printed, and what waits
// meanwhile is given back at once, so that only what is kept counts.
long residentKiB() {
    ::malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

// A real child that runs another command than the one it is given: it copies a file.
class Copier final : public platform::Process {
  public:
    // `ended` is called after the controller's own handler, on the same thread.
    Copier(const std::string& file, std::function<void()> theEnded) : ended(std::move(theEnded)) {
        process->executablePath = "/bin/cat";
        process->arguments = {file};
    }
    platform::Result<void, platform::LaunchError> run() override {
        process->readabilityHandler = readabilityHandler;
        process->terminationHandler = [told = terminationHandler, next = ended](int status) {
            told(status);
            next();
        };
        return process->run();
    }
    int processIdentifier() const override { return process->processIdentifier(); }
    bool isRunning() const override { return process->isRunning(); }
    void terminate() override { process->terminate(); }

  private:
    const std::function<void()> ended;
    const std::shared_ptr<platform::Process> process = platform::makePosixProcess();
};

// One session of the application's controller over `folder`/spank, which stands there as the
// detector and holds the lines.
class Session {
  public:
    explicit Session(const std::string& folder) {
        auto platform = platform::Platform::real(queue, {folder + "/bonkora", {}});
        platform.makeProcess = [this, folder] {
            return std::make_shared<Copier>(folder + "/spank",
                                            [this] { queue->async([this] { done(hasEnded); }); });
        };
        wrapper = SpankWrapper::create(platform);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { queue->close(); }

    // Seconds until a million more are counted and printed.
    double countAMillion() {
        const std::int64_t last = wrapper->slapCount + lines - 1;
        const double start = secondsSoFar();
        double seconds = 0;
        hasEnded = isCounted = false;
        const auto subscription = wrapper->objectWillChange.sink([&] {
            if (wrapper->slapCount == last && seconds == 0) {
                seconds = -1;
                // The last slap is about to be stored, and its line printed within this turn.
                queue->async([&] {
                    seconds = secondsSoFar() - start;
                    done(isCounted);
                });
            }
        });
        wrapper->start();
        QCoreApplication::exec();
        return seconds;
    }

  private:
    // The child's end and the last line come in either order.
    void done(bool& part) {
        part = true;
        if (hasEnded && isCounted) {
            QCoreApplication::quit();
        }
    }

    bool hasEnded = false;
    bool isCounted = false;
    const std::shared_ptr<QtMainQueue> queue = std::make_shared<QtMainQueue>();
    std::shared_ptr<SpankWrapper> wrapper;
};

void writeLines(const std::string& folder) {
    std::ofstream file(folder + "/spank");
    for (int number = 0; number < lines; ++number) {
        file << line(number) << '\n';
    }
}

void goOften(const std::string& folder, int roads, int readers) {
    Session session(folder);
    const auto texts = allLines();
    for (int time = 0; time < std::max(roads, readers); ++time) {
        if (time < roads) {
            session.countAMillion();
        }
        if (time < readers) {
            jsonReaderAlone(texts);
        }
    }
}

void measure(const std::string& folder) {
    Session session(folder);
    session.countAMillion();  // warm
    for (int turn = 0; turn < turns; ++turn) {
        std::fprintf(stderr, "json_reader_alone %.3f\n", jsonReaderAlone(allLines()));
        std::fprintf(stderr, "whole_road %.3f\n", session.countAMillion());
    }
    const long before = residentKiB();
    for (int times = 0; times < 10; ++times) {
        session.countAMillion();
    }
    std::fprintf(stderr, "resident_before_ten_million_kib %ld\n", before);
    std::fprintf(stderr, "resident_after_ten_million_kib %ld\n", residentKiB());
}

}  // namespace
}  // namespace bonkora

int main(int argumentCount, char** arguments) {
    bonkora::platform::prepareStandardStreams();
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: %s FOLDER [LINES [ROADS READERS]]\n", arguments[0]);
        return 2;
    }
    if (argumentCount > 2) {
        bonkora::lines = std::atoi(arguments[2]);
    }
    const QCoreApplication application(argumentCount, arguments);
    bonkora::writeLines(arguments[1]);
    if (argumentCount > 4) {
        bonkora::goOften(arguments[1], std::atoi(arguments[3]), std::atoi(arguments[4]));
    } else {
        bonkora::measure(arguments[1]);
    }
    return 0;
}
