// A runner that does what the test says, when it says so, and remembers what was asked of it.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Process.h"

namespace bonkora::test {

class FakeProcess final : public platform::Process {
  public:
    explicit FakeProcess(int number) : identifier(number) {}

    // What run() answers.
    std::optional<platform::LaunchError> failure;
    int terminations = 0;

    platform::Result<void, platform::LaunchError> run() override {
        running = !failure;
        if (failure) {
            return tl::unexpected(*failure);
        }
        return {};
    }
    int processIdentifier() const override { return identifier; }
    bool isRunning() const override { return running; }
    void terminate() override { ++terminations; }

    void print(std::string_view chunk) const { readabilityHandler(chunk); }
    void end(int status) {
        running = false;
        terminationHandler(status);
    }

  private:
    const int identifier;
    bool running = false;
};

// Makes them, numbers them from 100 on, and keeps them for the test.
class FakeProcesses {
  public:
    std::vector<std::shared_ptr<FakeProcess>> made;
    // For the next one.
    std::optional<platform::LaunchError> nextFailure;

    std::shared_ptr<platform::Process> make() {
        made.push_back(std::make_shared<FakeProcess>(100 + static_cast<int>(made.size())));
        made.back()->failure = std::exchange(nextFailure, std::nullopt);
        return made.back();
    }

    FakeProcess& last() const { return *made.back(); }
};

}  // namespace bonkora::test
