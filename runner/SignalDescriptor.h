// SignalDescriptor: some of this process's signals, to be polled for and read like any other input.
// They stay blocked until the process ends: a program started from here must unblock them. Made
// on the main thread before any other exists.
#pragma once

#include <initializer_list>
#include <optional>

#include "platform/UniqueDescriptor.h"

namespace bonkora::runner {

class SignalDescriptor {
  public:
    // Throws std::system_error when the system has no descriptor to give.
    explicit SignalDescriptor(std::initializer_list<int> signals);

    int get() const { return descriptor.get(); }
    // The number of a signal that has come, each kind once however often it came; or nothing.
    std::optional<int> take() const;

  private:
    platform::UniqueDescriptor descriptor;
};

}  // namespace bonkora::runner
