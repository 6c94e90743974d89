// A million slap lines on their whole way: a real child writes them to a real pipe, the controller
// counts each and prints its console line to standard output; against the JSON reader alone on the
// same lines. Then ten times a million, one child after another, for the memory that a session of
// ten million leaves behind. Figures on standard error, one "name value" a line, times in seconds.
//
// usage: slap_lines FOLDER [LINES]    (an empty one; the lines are written into it)
#include <malloc.h>
#include <unistd.h>

#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
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

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string line(int number) {
    return R"({"type":"slap","amplitude":0.)" + std::to_string(1000 + number % 9000) + "}";
}

double jsonReaderAlone() {
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(lines));
    for (int number = 0; number < lines; ++number) {
        texts.push_back(line(number));
    }
    const auto start = Clock::now();
    std::size_t keys = 0;
    for (const std::string& text : texts) {
        keys += platform::readJsonObject(text)->size();
    }
    const double seconds = secondsSince(start);
    if (keys != 2 * static_cast<std::size_t>(lines)) {
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
        const auto start = Clock::now();
        double seconds = 0;
        hasEnded = isCounted = false;
        const auto subscription = wrapper->objectWillChange.sink([&] {
            if (wrapper->slapCount == last && seconds == 0) {
                seconds = -1;
                // The last slap is about to be stored, and its line printed within this turn.
                queue->async([&] {
                    seconds = secondsSince(start);
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

int run(const std::string& folder) {
    {
        std::ofstream file(folder + "/spank");
        for (int number = 0; number < lines; ++number) {
            file << line(number) << '\n';
        }
    }
    Session session(folder);
    session.countAMillion();  // warm
    std::fprintf(stderr, "json_reader_alone %.3f\n", jsonReaderAlone());
    std::fprintf(stderr, "whole_road %.3f\n", session.countAMillion());
    const long before = residentKiB();
    for (int times = 0; times < 10; ++times) {
        session.countAMillion();
    }
    std::fprintf(stderr, "resident_before_ten_million_kib %ld\n", before);
    std::fprintf(stderr, "resident_after_ten_million_kib %ld\n", residentKiB());
    return 0;
}

}  // namespace
}  // namespace bonkora

int main(int argumentCount, char** arguments) {
    bonkora::platform::prepareStandardStreams();
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: %s FOLDER [LINES]\n", arguments[0]);
        return 2;
    }
    if (argumentCount > 2) {
        bonkora::lines = std::atoi(arguments[2]);
    }
    const QCoreApplication application(argumentCount, arguments);
    return bonkora::run(arguments[1]);
}
