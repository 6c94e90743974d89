// The console test: the road of one slap through the real doors of platform and bridge, with no
// library beside them. It plays its own runner: called as one, it prints a slap and ends. Prints a
// line for each claim and ends with the number of those that failed.
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "bridge/SpankWrapper.h"
#include "platform/FileManager.h"
#include "platform/JsonReader.h"
#include "platform/Platform.h"
#include "platform/System.h"
#include "platform/Text.h"

namespace {

using namespace bonkora;
using namespace std::chrono_literals;

constexpr int runnerStatus = 3;

int failures = 0;

void expect(bool holds, const char* claim) {
    std::printf("%s: %s\n", holds ? "ok" : "FAILED", claim);
    failures += holds ? 0 : 1;
}

// The main thread's queue as far as this program needs one: nothing here is delayed.
class ThisThreadsQueue final : public platform::MainQueue {
  public:
    void async(Task task) override {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(task));
        arrived.notify_one();
    }

    void asyncAfter(std::chrono::milliseconds, Task task) override { async(std::move(task)); }

    // Runs what arrives until `condition` holds; false when it does not within ten seconds.
    bool runUntil(const std::function<bool()>& condition) {
        while (!condition()) {
            std::unique_lock lock(mutex);
            if (!arrived.wait_for(lock, 10s, [&] { return !tasks.empty(); })) {
                return false;
            }
            const Task task = std::exchange(tasks.front(), nullptr);
            tasks.pop_front();
            lock.unlock();
            task();
        }
        return true;
    }

  private:
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<Task> tasks;
};

void testText() {
    expect(platform::shortestDecimal(0.42) == "0.42", "a number's text is the shortest");
    expect(platform::fixedDecimal(0.05, 3) == "0.050", "a number's text has three decimals");
    const auto object = platform::readJsonObject(R"({"type":"slap","amplitude":1.5e-1})");
    const auto* const amplitude =
        object ? std::get_if<double>(&object->find("amplitude")->second) : nullptr;
    expect(amplitude != nullptr && *amplitude == 0.15, "a number is read from JSON");
    expect(!platform::readJsonObject("{\"type\":"), "half a JSON text is none");
}

void testFiles() {
    const std::string folder = platform::temporaryDirectory();
    expect(folder.size() > 1 && folder.ends_with('/') && !folder.ends_with("//"),
           "the temporary folder ends in one slash");
    const std::string path = folder + "bonkora_console_test";
    expect(platform::writeAtomically(path, "text") && platform::fileExists(path),
           "a file is written");
    expect(platform::removeItem(path) && !platform::fileExists(path), "a file is removed");
}

void testOneSlap(const platform::Bundle& bundle) {
    const std::string folder = std::string(platform::parentFolder(*bundle.executablePath));
    const std::string detector = folder + "/spank";
    expect(platform::writeAtomically(detector, ""), "something stands where a detector is found");

    const auto queue = std::make_shared<ThisThreadsQueue>();
    platform::Platform system = platform::Platform::real(queue, bundle);
    system.runnerPath = [&] { return *bundle.executablePath; };
    system.temporaryDirectory = [&] { return folder + '/'; };
    const auto controller = SpankWrapper::create(system);
    controller->start();
    expect(controller->isRunning, "the runner is started");
    expect(
        queue->runUntil([&] { return !controller->isRunning && controller->slapCount.get() != 0; }),
        "the runner's slap and its end arrive");
    expect(controller->slapCount.get() == 1, "the slap counts once");
    expect(controller->lastAmplitude.get() == 0.42, "the slap's strength is kept");
    expect(controller->statusMessage.get() == "Error (code: 3)", "the runner's status is told");
    for (const char* const name :
         {"/spank", "/bonkora_launcher.sh", "/bonkora_output", "/bonkora_input"}) {
        expect(platform::removeItem(folder + name), "what the launch made is removed");
    }
}

}  // namespace

int main(int argumentCount, const char* const* arguments) {
    if (argumentCount > 1 && std::string_view(arguments[1]) == "-e") {
        std::puts(R"({"type":"slap","amplitude":0.42})");
        return runnerStatus;
    }
    testText();
    testFiles();
    const auto bundle = platform::Bundle::main(argumentCount, arguments);
    expect(bundle.executablePath.has_value(), "the program knows where it lies");
    if (bundle.executablePath) {
        testOneSlap(bundle);
    }
    return failures;
}
