// CommandRun: one run of bonkora-elevated and, in it, of the command. The command inherits the
// runner's own standard output, so what it writes needs no passing on. Main thread only: pkexec is
// ended by the kernel when the thread that started it ends. Should bonkora-elevated be killed, this
// process adopts what it leaves behind, and ends it.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Descriptor.h"
#include "platform/SignalDescriptor.h"
#include "runner/Descendants.h"
#include "runner/Failure.h"
#include "runner/HelperLaunch.h"

namespace bonkora::runner {

// The last bytes of an output of any length.
class OutputTail {
  public:
    static constexpr std::size_t limit = 4096;  // bytes: a screenful, and no message is longer

    void append(std::string_view bytes);
    std::string_view text() const { return tail; }

  private:
    std::string tail;
};

class CommandRun {
  public:
    // `endSignals`: any signal that comes from it asks the run to end.
    explicit CommandRun(const platform::SignalDescriptor& theEndSignals)
        : endSignals(theEndSignals) {}

    // Runs until the command has ended. Returns nothing when it succeeded, and also when the run
    // was ended from outside, by a signal or because nobody reads the output any more: then
    // everything that could be ended within endingTime is gone.
    std::optional<Failure> run(const HelperLaunch& launch);

  private:
    std::optional<Failure> start(const HelperLaunch& launch);
    // False when the run was ended from outside.
    bool waitForReport();
    void endCommand();
    // False when the other side has closed the link.
    bool readLink();
    // False when there is nothing more to read for now.
    bool readErrors();

    const platform::SignalDescriptor& endSignals;
    pid_t helper = -1;
    platform::UniqueDescriptor link;
    platform::UniqueDescriptor errors;
    OutputTail errorTail;
    HelperReport report;
    Descendants descendants{Descendants::Reach::tree, [](pid_t, int) {}};
};

}  // namespace bonkora::runner
