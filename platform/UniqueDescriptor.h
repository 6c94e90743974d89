// UniqueDescriptor: owns one file descriptor and closes it. Not thread-safe.
#pragma once

#include <unistd.h>

#include <utility>

namespace bonkora::platform {

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

}  // namespace bonkora::platform
