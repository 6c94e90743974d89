// SpawnAttributes: how a child process is started: a new process group, no signal blocked, every
// disposition the default, and no descriptor but 0, 1 and 2. One thread.
#pragma once

#include <spawn.h>

namespace bonkora::platform {

class SpawnAttributes {
  public:
    // `output` becomes the child's descriptors 1 and 2.
    explicit SpawnAttributes(int output);
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes();

    const posix_spawn_file_actions_t* fileActions() const { return &actions; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

  private:
    // One implementation for each system.
    void closeOtherDescriptors();
    // What the flags for posix_spawn are beside those every system has.
    static short systemFlags();

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes_{};
};

}  // namespace bonkora::platform
