#include "platform/Console.h"

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/Descriptor.h"

namespace bonkora::platform {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 500ms;
constexpr std::size_t pieceSize = 65536;

// Does not wait: where standard error is full as well, the sentence is lost.
void tellOnStandardError(const std::string& sentence) {
    pollfd writable{STDERR_FILENO, POLLOUT, 0};
    if (::poll(&writable, 1, 0) == 1 && (writable.revents & POLLOUT) != 0) {
        [[maybe_unused]] const auto written =
            ::write(STDERR_FILENO, sentence.data(), sentence.size());
    }
}

// The lines on their way. Shared with the writer, which outlives the console if a write never
// returns.
struct Lines {
    std::mutex mutex;
    std::condition_variable arrived;  // something to write, or the end
    std::condition_variable written;
    std::string waiting;
    std::size_t inWriting = 0;  // bytes the writer has taken and not put out yet
    std::uint64_t putOut = 0;   // bytes, ever
    std::uint64_t dropped = 0;  // lines, since the last that was kept
    int bursts = 0;
    int flushes = 0;
    bool isToEnd = false;

    std::size_t size() const { return waiting.size() + inWriting; }
    bool mayBeWritten() const { return !waiting.empty() && (bursts == 0 || flushes != 0); }
};

// Writes in pieces, so that flush() sees the progress.
void writeInPieces(Lines& lines, std::string_view text) {
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, pieceSize);
        text.remove_prefix(piece.size());
        writeAll(STDOUT_FILENO, piece);
        const std::lock_guard lock(lines.mutex);
        lines.inWriting -= piece.size();
        lines.putOut += piece.size();
        lines.written.notify_all();
    }
}

void writeLines(const std::shared_ptr<Lines>& lines) {
    std::unique_lock lock(lines->mutex);
    for (;;) {
        lines->arrived.wait(lock, [&] { return lines->isToEnd || lines->mayBeWritten(); });
        if (lines->waiting.empty()) {
            return;
        }
        const std::string text = std::exchange(lines->waiting, std::string());
        lines->inWriting = text.size();
        lock.unlock();
        writeInPieces(*lines, text);
        lock.lock();
    }
}

class StandardOutput final : public Console {
  public:
    StandardOutput() {
        try {
            std::thread(writeLines, lines).detach();
        } catch (const std::system_error&) {
            hasWriter = false;
        }
    }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    ~StandardOutput() override {
        StandardOutput::flush();
        const std::lock_guard lock(lines->mutex);
        lines->isToEnd = true;
        lines->arrived.notify_all();
    }

    void print(std::string_view line) override {
        const std::lock_guard lock(lines->mutex);
        if (!hasRoomFor(line)) {
            ++lines->dropped;
            return;
        }
        tellHowManyWereDropped();
        lines->waiting += line;
        lines->waiting += '\n';
        wakeWriter();
    }

    void flush() override {
        std::unique_lock lock(lines->mutex);
        ++lines->flushes;
        wakeWriter();
        std::uint64_t before = 0;
        do {
            before = lines->putOut;
        } while (!lines->written.wait_for(lock, patience, [&] { return lines->size() == 0; }) &&
                 lines->putOut != before);
        --lines->flushes;
        tellHowManyWereDropped();
    }

  private:
    void beginBurst() override {
        const std::lock_guard lock(lines->mutex);
        ++lines->bursts;
    }

    void endBurst() override {
        const std::lock_guard lock(lines->mutex);
        --lines->bursts;
        wakeWriter();
    }

    void wakeWriter() {
        if (!lines->mayBeWritten()) {
            return;
        }
        if (hasWriter) {
            lines->arrived.notify_one();
        } else {
            // The system gave no thread for the writer: waiting is better than losing lines.
            writeAll(STDOUT_FILENO, std::exchange(lines->waiting, std::string()));
        }
    }

    // A line that is longer than the capacity has room if nothing else waits. Once a line has been
    // dropped, half of the capacity must be free again, so that a slow reader gets long stretches
    // of lines instead of single ones.
    bool hasRoomFor(std::string_view line) const {
        const std::size_t size = lines->size();
        const std::size_t limit = lines->dropped == 0 ? capacity : capacity / 2;
        return size == 0 || size + line.size() + 1 <= limit;
    }

    void tellHowManyWereDropped() {
        if (const auto count = std::exchange(lines->dropped, 0); count != 0) {
            tellOnStandardError("bonkora: " + std::to_string(count) +
                                " lines of standard output were dropped, since nobody read it\n");
        }
    }

    const std::shared_ptr<Lines> lines = std::make_shared<Lines>();
    bool hasWriter = true;
};

// A program has one standard output: its lines keep their order whoever prints them.
struct TheConsole {
    std::mutex mutex;
    std::weak_ptr<Console> console;
};

TheConsole& theConsole() {
    static TheConsole one;
    return one;
}

void flushStandardOutput() {
    const std::unique_lock lock(theConsole().mutex);
    if (const auto console = theConsole().console.lock()) {
        console->flush();
    }
}

}  // namespace

std::shared_ptr<Console> Console::standardOutput() {
    TheConsole& one = theConsole();
    static const bool isFlushedAtTheEnd = std::atexit(flushStandardOutput) == 0;
    static_cast<void>(isFlushedAtTheEnd);
    const std::lock_guard lock(one.mutex);
    auto console = one.console.lock();
    if (!console) {
        console = std::make_shared<StandardOutput>();
        one.console = console;
    }
    return console;
}

void fatalError(std::string_view message) {
    flushStandardOutput();
    writeAll(STDERR_FILENO, "Fatal error: " + std::string(message) + "\n");
    std::abort();
}

}  // namespace bonkora::platform
