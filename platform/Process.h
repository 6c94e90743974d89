// Process: a passive handle of one child process, its output pipe and its end.
//
// Set up and started on one thread; the handlers run on background threads: chunks of output one
// after another on one, the end of the child on another, in no fixed order between the two (a
// grandchild may hold the pipe open after the child has ended). Destroying the handle signals
// nothing: the child runs on, its output is still drained and handed on, and it is still reaped.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Result.h"

namespace bonkora::platform {

// Why a process could not be started, in the words and numbers the platform uses. A value.
struct LaunchError {
    std::string domain;  // NSCocoaErrorDomain or NSPOSIXErrorDomain
    int code = 0;        // a number of that domain
    std::string path;    // the executable that was asked for

    // From a number of <cerrno>. An executable that is missing and one without execute permission
    // are both reported as missing, a folder as a lack of permission, as the Mac's facility does.
    static LaunchError fromErrno(const std::string& path, int number);

    // For people, for example: The file “osascript” doesn’t exist.
    std::string localizedDescription() const;
    // For developers: domain, number, text and path on one line.
    std::string description() const;
};

class Process {
  public:
    // What one read of at most 64 KiB gave. Empty once, at the end of the output.
    using ReadabilityHandler = std::function<void(std::string_view chunk)>;
    // The exit code, or the number of the signal that ended the child, or unknownStatus.
    using TerminationHandler = std::function<void(int status)>;
    // When the system does not tell, since somebody else in this program has asked it before.
    static constexpr int unknownStatus = -1;

    Process() = default;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    virtual ~Process() = default;

    std::string executablePath;
    std::vector<std::string> arguments;  // without the program's own name
    // Standard output and standard error together. Without a handler they are drained and lost.
    ReadabilityHandler readabilityHandler;
    TerminationHandler terminationHandler;

    // Starts the child, once: standard input, environment and working directory are inherited, no
    // other descriptor is; its process group is new, its signal mask and dispositions the default.
    // If it cannot be started, nothing is left behind and no handler is called.
    virtual Result<void, LaunchError> run() = 0;

    // Of the child; 0 before a successful run().
    virtual int processIdentifier() const = 0;
    virtual bool isRunning() const = 0;

    // Asks the child, and it alone, to end (SIGTERM). Does nothing before run() and once the child
    // has ended, also when its number has been given to another process since.
    virtual void terminate() = 0;
};

using ProcessFactory = std::function<std::shared_ptr<Process>()>;

// A child of this program, started with posix_spawn.
std::shared_ptr<Process> makePosixProcess();

// A pointer to each of `texts`, which must outlive them, and a null pointer: the way exec and its
// kin want arguments and environment.
std::vector<char*> execVector(std::vector<std::string>& texts);

}  // namespace bonkora::platform
