// File descriptors: one that is owned, the two of a pipe, and the three that every program has.
#pragma once

#include <unistd.h>

#include <optional>
#include <string_view>
#include <utility>

namespace bonkora::platform {

// Owns one file descriptor and closes it. Not thread-safe.
class UniqueDescriptor {
  public:
    UniqueDescriptor() = default;
    explicit UniqueDescriptor(int theDescriptor) : descriptor(theDescriptor) {}
    UniqueDescriptor(UniqueDescriptor&& other) noexcept
        : descriptor(std::exchange(other.descriptor, -1)) {}
    UniqueDescriptor& operator=(UniqueDescriptor&& other) noexcept {
        reset(std::exchange(other.descriptor, -1));
        return *this;
    }
    UniqueDescriptor(const UniqueDescriptor&) = delete;
    UniqueDescriptor& operator=(const UniqueDescriptor&) = delete;
    ~UniqueDescriptor() { reset(); }

    int get() const { return descriptor; }
    explicit operator bool() const { return descriptor >= 0; }
    int release() { return std::exchange(descriptor, -1); }
    void reset(int other = -1) {
        if (const int old = std::exchange(descriptor, other); old >= 0) {
            ::close(old);
        }
    }

  private:
    int descriptor = -1;
};

// Both ends of a pipe, closed on exec. In a program that has called prepareStandardStreams(),
// neither is number 0, 1 or 2.
struct Pipe {
    UniqueDescriptor fileHandleForReading;
    UniqueDescriptor fileHandleForWriting;

    // Nothing, and errno set, when the system has no descriptor to give.
    static std::optional<Pipe> make();
};

// Writes all of `bytes`, waiting where the descriptor would block. False, and errno set, on any
// error. A pipe without a reader is one only while SIGPIPE is ignored.
bool writeAll(int descriptor, std::string_view bytes);

// What a program does first. Those of descriptors 0, 1 and 2 that are closed are opened on
// /dev/null, so that no later file takes their number and receives console lines. A write to a pipe
// without a reader fails instead of ending the program. The status of a child that has ended is
// kept until it is asked for, even if this program was started with SIGCHLD ignored. Main thread,
// before any other thread exists.
void prepareStandardStreams();

}  // namespace bonkora::platform
