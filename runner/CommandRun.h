// CommandRun: one run of bonkora-elevated and, in it, of the command. The command has the runner's
// own standard output, so what it writes needs no passing on. Main thread only, and it must be
// that thread which stays: pkexec ends with the thread that started it.
#pragma once

#include <sys/types.h>

#include <optional>

#include "platform/UniqueDescriptor.h"
#include "runner/Failure.h"
#include "runner/HelperLaunch.h"
#include "runner/HelperReport.h"
#include "runner/OutputTail.h"
#include "runner/SignalDescriptor.h"

namespace bonkora::runner {

class CommandRun {
  public:
    // `endSignals`: any signal that comes from it asks the run to end.
    explicit CommandRun(const SignalDescriptor& theEndSignals) : endSignals(theEndSignals) {}

    // Runs until the command has ended. Nothing when it succeeded, and also when the run was ended
    // from outside, by a signal or because nobody reads the output any more: then all is gone that
    // could be ended within endingTime.
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

    const SignalDescriptor& endSignals;
    pid_t helper = -1;
    platform::UniqueDescriptor link;
    platform::UniqueDescriptor errors;
    OutputTail errorTail;
    HelperReport report;
};

}  // namespace bonkora::runner
