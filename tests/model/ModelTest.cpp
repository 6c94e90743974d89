// The whole controller against a model of it, in virtual time: random sequences of everything that
// can happen, compared in everything that can be seen, order included.
//
// BONKORA_MODEL_SEQUENCES says how many (default 2000), BONKORA_MODEL_SEED which one to begin with.
#include <gtest/gtest.h>

#include <algorithm>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>

#include "platform/FileManager.h"
#include "tests/model/ControllerModel.h"
#include "tests/support/TestPlatform.h"

namespace bonkora::test {
namespace {

using Diary = std::vector<std::string>;

std::string replacing(std::string text, const std::string& what, const std::string& with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
        text.replace(at, what.size(), with);
    }
    return text;
}

// Console lines go to the diary.
class DiaryConsole final : public platform::Console {
  public:
    DiaryConsole(Diary& theDiary, const std::string& theDetector)
        : diary(theDiary), detector(theDetector) {}
    void print(std::string_view line) override {
        std::string text = "print " + replacing(std::string(line), detector, "DETECTOR");
        // The reason's full form has tests of its own.
        const std::string failure = "print ❌ Failed to launch spank";
        diary.push_back(text.rfind(failure, 0) == 0 ? failure : text);
    }

  private:
    Diary& diary;
    const std::string& detector;
};

// A fake runner that writes down what is asked of it.
class DiaryProcess final : public platform::Process {
  public:
    DiaryProcess(Diary& theDiary, const std::string& theDetector, int theNumber,
                 std::optional<platform::LaunchError> theFailure)
        : diary(theDiary),
          detector(theDetector),
          number(theNumber),
          failure(std::move(theFailure)) {}
    platform::Result<void, platform::LaunchError> run() override {
        diary.push_back("launch " + arguments[0] + ' ' +
                        replacing(arguments[1], detector, "DETECTOR"));
        if (failure) {
            return tl::unexpected(*failure);
        }
        return {};
    }
    int processIdentifier() const override { return 100 + number; }
    bool isRunning() const override { return true; }
    void terminate() override { diary.push_back("terminate " + std::to_string(number)); }

  private:
    Diary& diary;
    const std::string& detector;
    const int number;
    const std::optional<platform::LaunchError> failure;
};

// One controller and its model, driven alike.
class Pair {
  public:
    Pair(const TestPlatform& system, unsigned long long seed) : folder(system), random(seed) {
        platform::Platform platform = system.value();
        platform.mainQueue = std::make_shared<ManualMainQueue>(time);
        platform.globalQueue = std::make_shared<ManualGlobalQueue>(time);
        platform.console = std::make_shared<DiaryConsole>(real, system.detector);
        platform.makeProcess = [this] {
            runners.push_back(std::make_shared<DiaryProcess>(
                real, folder.detector, static_cast<int>(runners.size()),
                std::exchange(nextFailure, std::nullopt)));
            return runners.back();
        };
        wrapper = SpankWrapper::create(std::move(platform));
        subscription = wrapper->objectWillChange.sink(
            [this] { real.push_back("announce " + snapshot().text()); });
        placeDetector(true);
        std::filesystem::remove(folder.temporaryDirectory + "bonkora_launcher.sh");
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;
    ~Pair() { placeDetector(true); }

    // Does one random thing to both; its name.
    std::string step();

    testing::AssertionResult agree() {
        if (real != expected) {
            std::size_t at = 0;
            while (at < real.size() && at < expected.size() && real[at] == expected[at]) {
                ++at;
            }
            return testing::AssertionFailure()
                   << "the diaries part at entry " << at
                   << "\n  controller: " << (at < real.size() ? real[at] : "(nothing)")
                   << "\n  model:      " << (at < expected.size() ? expected[at] : "(nothing)");
        }
        if (wrapper && snapshot().text() != model.now.text()) {
            return testing::AssertionFailure()
                   << "the values differ\n  controller: " << snapshot().text()
                   << "\n  model:      " << model.now.text();
        }
        const bool script = platform::fileExists(folder.temporaryDirectory + "bonkora_launcher.sh");
        if (script != model.scriptExists) {
            return testing::AssertionFailure()
                   << "the launcher script " << (script ? "is there" : "is not there");
        }
        return testing::AssertionSuccess();
    }

  private:
    Snapshot snapshot() const {
        return {wrapper->isRunning,     std::string(rawValue(wrapper->currentMode)),
                wrapper->slapCount,     wrapper->lastAmplitude,
                wrapper->statusMessage, wrapper->volumeScaling,
                wrapper->fastMode,      wrapper->cooldownMs,
                wrapper->minAmplitude,  wrapper->customSoundPath};
    }
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    void placeDetector(bool present) const {
        if (present) {
            folder.folder.write("Bonkora.app/Contents/Resources/spank", "", true);
        } else {
            std::filesystem::remove(folder.detector);
        }
    }
    std::string assignSomething();
    std::string print();

    const TestPlatform& folder;
    std::mt19937_64 random;
    std::shared_ptr<VirtualTime> time = std::make_shared<VirtualTime>();
    Diary real;
    Diary expected;
    std::vector<std::shared_ptr<DiaryProcess>> runners;
    std::vector<std::size_t> ended;
    std::optional<platform::LaunchError> nextFailure;
    std::string unprinted;  // text that is still to come, from whichever runner
    std::shared_ptr<SpankWrapper> wrapper;
    platform::ObservableObjectPublisher::Subscription subscription;
    ControllerModel model{expected};
};

std::string Pair::assignSomething() {
    const bool flag = pick(2) == 0;
    switch (pick(5)) {
        case 0:
            wrapper->volumeScaling = flag;
            model.assign(&Snapshot::volumeScaling, flag);
            break;
        case 1:
            wrapper->fastMode = flag;
            model.assign(&Snapshot::fastMode, flag);
            break;
        case 2: {
            const std::int64_t value = 100 + 50 * pick(59);
            wrapper->cooldownMs = value;
            model.assign(&Snapshot::cooldownMs, value);
            break;
        }
        case 3: {
            const double value = (10 + 5 * pick(99)) / 1000.0;
            wrapper->minAmplitude = value;
            model.assign(&Snapshot::minAmplitude, value);
            break;
        }
        default: {
            const std::string value = flag ? "" : "/my sounds";
            wrapper->customSoundPath = value;
            model.assign(&Snapshot::folder, value);
        }
    }
    return "assign a setting";
}

std::string Pair::print() {
    if (runners.empty()) {
        return "nobody prints";
    }
    while (unprinted.size() < 60) {
        const auto& lines = knownLines();
        unprinted += lines[static_cast<std::size_t>(pick(static_cast<int>(lines.size())))].text;
        unprinted += '\n';
    }
    // Any runner that ever was, also one that has ended: others may hold its pipe.
    const auto& runner = runners[static_cast<std::size_t>(pick(static_cast<int>(runners.size())))];
    const std::string chunk = unprinted.substr(0, static_cast<std::size_t>(pick(60)));
    unprinted.erase(0, chunk.size());
    runner->readabilityHandler(chunk);
    model.printed(chunk);
    return "print " + chunk;
}

std::string Pair::step() {
    switch (wrapper ? pick(13) : 7 + pick(3)) {
        case 0:
        case 1:
            wrapper->start();
            model.start();
            return "start";
        case 2:
            wrapper->stop();
            model.stop();
            return "stop";
        case 3:
            wrapper->restart();
            model.restart();
            return "restart";
        case 4: {
            const Mode mode = allCases[static_cast<std::size_t>(pick(4))];
            wrapper->switchMode(mode);
            model.switchMode(std::string(rawValue(mode)));
            return "switchMode " + std::string(rawValue(mode));
        }
        case 5:
            return assignSomething();
        case 6:
            if (pick(2) == 0) {
                nextFailure = platform::LaunchError{"NSPOSIXErrorDomain", 13, "/x"};
                model.nextFailure = nextFailure->localizedDescription();
                return "the next launch is to fail";
            }
            model.detectorIsThere = !model.detectorIsThere;
            placeDetector(model.detectorIsThere);
            return "the detector comes or goes";
        case 7: {
            if (ended.size() == runners.size()) {
                return "nobody ends";
            }
            std::size_t number = 0;
            do {
                number = static_cast<std::size_t>(pick(static_cast<int>(runners.size())));
            } while (std::find(ended.begin(), ended.end(), number) != ended.end());
            ended.push_back(number);
            const int status = pick(2) == 0 ? 0 : pick(256);
            // One that never started has no handler to call, and no end.
            runners[number]->terminationHandler(status);
            model.ended(status);
            return "runner " + std::to_string(number) + " ends with " + std::to_string(status);
        }
        case 8:
            return print();
        case 12:
            if (pick(20) == 0) {
                wrapper.reset();
                model.destroy();
                return "destroy";
            }
            [[fallthrough]];
        default: {
            constexpr std::array<int, 8> durations{0, 0, 1, 250, 499, 500, 1000, 2000};
            const int duration = durations[static_cast<std::size_t>(pick(8))];
            time->advance(milliseconds(duration));
            model.advance(duration);
            return "advance " + std::to_string(duration);
        }
    }
}

unsigned long long fromEnvironment(const char* name, unsigned long long otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : std::strtoull(value, nullptr, 10);
}

TEST(Model, everySequenceLooksTheSameFromOutside) {
    const auto sequences = fromEnvironment("BONKORA_MODEL_SEQUENCES", 2000);
    const auto firstSeed = fromEnvironment("BONKORA_MODEL_SEED", 1);
    const TestPlatform system;
    unsigned long long steps = 0;
    for (auto seed = firstSeed; seed < firstSeed + sequences; ++seed) {
        Pair pair(system, seed);
        std::string history;
        for (int count = 0; count < 40; ++count, ++steps) {
            history += "  " + pair.step() + '\n';
            const auto agree = pair.agree();
            ASSERT_TRUE(agree) << "\nBONKORA_MODEL_SEED=" << seed << "\n" << history;
        }
    }
    std::cout << sequences << " sequences, " << steps << " steps\n";
}

}  // namespace
}  // namespace bonkora::test
