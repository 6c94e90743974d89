// Preloaded into a program: reading /proc/1/stat fails as it does when a process ends after its
// file has been opened. Everything else is read as ever.
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

extern "C" ssize_t read(int descriptor, void* buffer, size_t size) {
    char link[64];
    char path[64];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = ::readlink(link, path, sizeof path - 1);
    path[length > 0 ? length : 0] = '\0';
    if (std::strcmp(path, "/proc/1/stat") == 0) {
        errno = ESRCH;
        return -1;
    }
    return ::syscall(SYS_read, descriptor, buffer, size);
}
