// ProcessWatch: any process by its number, watched from when it is known to live until it is gone,
// however soon its number is given to another.
#pragma once

#include <sys/types.h>

#include <chrono>

#include "platform/Descriptor.h"

namespace bonkora::test {

class ProcessWatch {
  public:
    // Throws std::runtime_error when there is no such process.
    explicit ProcessWatch(pid_t process);

    // Whether it ends within that time from now (a zombie has ended).
    bool endsWithin(std::chrono::milliseconds time) const;
    bool isAlive() const { return !endsWithin(std::chrono::milliseconds(0)); }

  private:
    platform::UniqueDescriptor descriptor;
};

}  // namespace bonkora::test
