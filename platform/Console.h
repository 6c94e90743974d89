// Console: the program's standard output, one line a call, out at once whatever it is connected to;
// only the lines of a burst go out together, at its end.
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

    // Writes the lines that a burst has kept so far: for who will not see its end.
    virtual void flush() {}

    // For as long as it lives, lines wait to be written together: for many lines at a time, whose
    // writes would cost more than all else that is done with them.
    class [[nodiscard]] Burst {
      public:
        explicit Burst(Console& theConsole) : console(theConsole) { console.beginBurst(); }
        Burst(const Burst&) = delete;
        Burst& operator=(const Burst&) = delete;
        ~Burst() { console.endBurst(); }

      private:
        Console& console;
    };

    static std::shared_ptr<Console> standardOutput();

  private:
    virtual void beginBurst() {}
    virtual void endBurst() {}
};

// Ends the program at once, with a line on standard error: for broken contracts, which no caller
// could handle.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace bonkora::platform
