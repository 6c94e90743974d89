// InstanceLock: a lock file of the user and display; one that a dead process left does not count.
// Main thread.
#pragma once

#include <QLockFile>

namespace bonkora {

class InstanceLock {
  public:
    InstanceLock();

    // False where another process holds it. A folder that takes no lock file stops nobody.
    bool take();

  private:
    QLockFile file;
};

}  // namespace bonkora
