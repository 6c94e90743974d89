// SignalDescriptor: some of this process's signals, to be polled for and read like any other input,
// until the process ends. On Linux they are blocked: a program started from here must unblock them,
// and it is made on the main thread before any other exists, since each inherits what is blocked.
// On macOS they are caught, for the one that was made last.
#pragma once

#include <initializer_list>
#include <optional>

#include "platform/Descriptor.h"

namespace bonkora::platform {

class SignalDescriptor {
  public:
    // Throws std::system_error when the system has no descriptor to give.
    explicit SignalDescriptor(std::initializer_list<int> signals);

    int get() const { return descriptor.get(); }
    // The number of a signal that has come, each kind once however often it came; or nothing.
    std::optional<int> take() const;

  private:
    UniqueDescriptor descriptor;
};

}  // namespace bonkora::platform
