// A console whose lines the test reads.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/Console.h"

namespace bonkora::test {

class RecordingConsole final : public platform::Console {
  public:
    void print(std::string_view line) override {
        const std::lock_guard lock(mutex);
        printed.emplace_back(line);
    }

    std::vector<std::string> lines() const {
        const std::lock_guard lock(mutex);
        return printed;
    }
    // Those since the last call.
    std::vector<std::string> take() {
        const std::lock_guard lock(mutex);
        return std::exchange(printed, {});
    }

  private:
    mutable std::mutex mutex;
    std::vector<std::string> printed;
};

}  // namespace bonkora::test
