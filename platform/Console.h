// Console: the program's standard output, one line a call, out at once whatever it is connected to.
// Any thread. A console that is closed, full or has no reader any more loses the line silently: a
// line for the developer is no reason to stop.
#pragma once

#include <memory>
#include <string_view>

namespace bonkora::platform {

class Console {
  public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    virtual ~Console() = default;

    // Prints `line` and a line feed. `line` may hold any bytes.
    virtual void print(std::string_view line) = 0;

    static std::shared_ptr<Console> standardOutput();
};

}  // namespace bonkora::platform
