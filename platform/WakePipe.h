// WakePipe: wakes a thread that waits in poll(). set() may be called by any thread and by a signal
// handler; the rest belongs to the thread that waits.
#pragma once

#include <memory>
#include <utility>

#include "platform/Descriptor.h"

namespace bonkora::platform {

class WakePipe {
  public:
    // Nothing when the system has no descriptors to give.
    static std::unique_ptr<WakePipe> make();

    // Polls as readable from set() until clear(), however often it was set.
    int descriptor() const { return pipe.fileHandleForReading.get(); }
    // Never waits, and leaves errno alone.
    void set() const;
    void clear() const;

    explicit WakePipe(Pipe thePipe) : pipe(std::move(thePipe)) {}

  private:
    const Pipe pipe;
};

}  // namespace bonkora::platform
