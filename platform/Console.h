// Console: the program's standard output, one line a call. Any thread.
//
// A line is out at once whatever the output is connected to, except that the lines of a burst go
// out together, at its end. Printing never waits for whoever reads: lines wait for a thread of the
// console's own. What is more than it keeps for a reader who has stopped reading is dropped, in
// whole lines, and one line on standard error says how many when somebody reads again or the
// program ends. A console that is closed or has no reader any more loses the line silently: a line
// for the developer is no reason to stop.
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

    // Waits until all lines are out, also those of an unfinished burst; gives up when nobody reads
    // for half a second.
    virtual void flush() {}

    // While it lives, lines wait, and are then written together. For many lines at a time: writing
    // each alone would cost more than everything else that is done with it.
    class [[nodiscard]] Burst {
      public:
        explicit Burst(Console& theConsole) : console(theConsole) { console.beginBurst(); }
        Burst(const Burst&) = delete;
        Burst& operator=(const Burst&) = delete;
        ~Burst() { console.endBurst(); }

      private:
        Console& console;
    };

    // The same one for all who hold it. It is flushed when the program ends, by exit() or by
    // fatalError().
    static std::shared_ptr<Console> standardOutput();

    // What standardOutput() keeps for a reader, in bytes.
    static constexpr std::size_t capacity = std::size_t{4} << 20U;

  private:
    virtual void beginBurst() {}
    virtual void endBurst() {}
};

// Ends the program at once, with a line on standard error: for broken contracts, which no caller
// could handle. What has been printed before is out first.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace bonkora::platform
