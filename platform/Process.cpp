#include "platform/Process.h"

#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/Descriptor.h"
#include "platform/FileManager.h"
#include "platform/System.h"

extern char** environ;  // NOLINT(readability-redundant-declaration): not declared on every system

namespace bonkora::platform {
namespace {

constexpr const char* cocoa = "NSCocoaErrorDomain";
constexpr const char* posix = "NSPOSIXErrorDomain";
constexpr int noSuchFile = 4;  // NSFileNoSuchFileError

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// How a child is started: a new process group, no signal blocked, every disposition the default,
// and no descriptor but 0, 1 and 2.
class SpawnAttributes {
  public:
    SpawnAttributes() {
        keep(::posix_spawn_file_actions_init(&actions));
        keep(::posix_spawnattr_init(&attributes_));
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions);
    }

    // `output` becomes the child's descriptors 1 and 2. Returns 0 or the first error's number.
    int set(int output) {
        keep(::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO));
        keep(::posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO));
        keep(keepStandardDescriptorsOnly(actions));
        keep(::posix_spawnattr_setflags(
            &attributes_, static_cast<short>(POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                             POSIX_SPAWN_SETSIGDEF | systemSpawnFlags())));
        keep(::posix_spawnattr_setpgroup(&attributes_, 0));
        sigset_t signals;
        sigemptyset(&signals);
        keep(::posix_spawnattr_setsigmask(&attributes_, &signals));
        sigfillset(&signals);
        keep(::posix_spawnattr_setsigdefault(&attributes_, &signals));
        return error;
    }

    const posix_spawn_file_actions_t* fileActions() const { return &actions; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

  private:
    void keep(int number) { error = error != 0 ? error : number; }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes_{};
    int error = 0;
};

// The child, shared by its waiter and its handle. Nobody else can have its number until it is
// reaped, and it is reaped with the mutex held: a signal sent with the mutex held reaches the child
// or nobody.
struct Child {
    enum class Phase { notStarted, failed, running, ended };

    std::mutex mutex;
    std::condition_variable decided;
    Phase phase = Phase::notStarted;
    pid_t identifier = 0;

    void decide(pid_t theIdentifier) {
        const std::lock_guard lock(mutex);
        identifier = theIdentifier;
        phase = identifier != 0 ? Phase::running : Phase::failed;
        decided.notify_all();
    }

    // Waits until it is known whether the child runs.
    bool hasStarted() {
        std::unique_lock lock(mutex);
        decided.wait(lock, [this] { return phase != Phase::notStarted; });
        return phase != Phase::failed;
    }
};

// Hands on what can be read until the end of the output, which comes when every holder of the
// writing end has closed it.
void readToTheEnd(const UniqueDescriptor& output, const Process::ReadabilityHandler& handler) {
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = ::read(output.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (handler) {
            handler({buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0});
        }
        if (count <= 0) {
            return;
        }
    }
}

// Waits for the end without reaping, then reaps under the mutex.
int waitForTheEnd(Child& child) {
    siginfo_t info{};
    while (::waitid(P_PID, static_cast<id_t>(child.identifier), &info, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
    const std::lock_guard lock(child.mutex);
    child.phase = Child::Phase::ended;
    int status = 0;
    pid_t reaped = 0;
    do {
        reaped = ::waitpid(child.identifier, &status, 0);
    } while (reaped < 0 && errno == EINTR);
    if (reaped != child.identifier) {
        return Process::unknownStatus;
    }
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

class PosixProcess final : public Process {
  public:
    Result<void, LaunchError> run() override {
        auto pipe = Pipe::make();
        if (!pipe) {
            return tl::unexpected(LaunchError::fromErrno(executablePath, errno));
        }
        // The threads come first: once the child runs, nothing may fail any more.
        std::thread reader;
        std::thread waiter;
        pid_t identifier = 0;
        int error = 0;
        try {
            reader = std::thread([theChild = child, output = std::move(pipe->fileHandleForReading),
                                  handler = readabilityHandler] {
                if (theChild->hasStarted()) {
                    readToTheEnd(output, handler);
                }
            });
            waiter = std::thread([theChild = child, handler = terminationHandler] {
                if (theChild->hasStarted()) {
                    const int status = waitForTheEnd(*theChild);
                    if (handler) {
                        handler(status);
                    }
                }
            });
            error = spawn(pipe->fileHandleForWriting.get(), identifier);
        } catch (const std::system_error& failure) {
            error = failure.code().value();
        }
        child->decide(error == 0 ? identifier : 0);
        for (std::thread* const thread : {&reader, &waiter}) {
            if (thread->joinable()) {
                // Each owns all it touches, so it may outlive this handle.
                error == 0 ? thread->detach() : thread->join();
            }
        }
        if (error != 0) {
            return tl::unexpected(LaunchError::fromErrno(executablePath, error));
        }
        return {};
    }

    int processIdentifier() const override {
        const std::lock_guard lock(child->mutex);
        return child->identifier;
    }

    bool isRunning() const override {
        const std::lock_guard lock(child->mutex);
        return child->phase == Child::Phase::running;
    }

    void terminate() override {
        const std::lock_guard lock(child->mutex);
        if (child->phase == Child::Phase::running) {
            ::kill(child->identifier, SIGTERM);
        }
    }

  private:
    // Sets `identifier` and returns 0, or returns the error's number.
    int spawn(int output, pid_t& identifier) {
        std::vector<std::string> texts = arguments;
        texts.insert(texts.begin(), executablePath);
        const std::vector<char*> argv = execVector(texts);
        SpawnAttributes how;
        if (const int error = how.set(output)) {
            return error;
        }
        return ::posix_spawn(&identifier, executablePath.c_str(), how.fileActions(),
                             how.attributes(), argv.data(), environ);
    }

    const std::shared_ptr<Child> child = std::make_shared<Child>();
};

}  // namespace

LaunchError LaunchError::fromErrno(const std::string& path, int number) {
    const bool missing = number == ENOENT || number == ENOTDIR || number == ELOOP ||
                         (number == EACCES && !isFolder(path));
    return missing ? LaunchError{cocoa, noSuchFile, path} : LaunchError{posix, number, path};
}

std::string LaunchError::localizedDescription() const {
    if (domain == cocoa) {
        return "The file “" + std::string(lastComponent(path)) + "” doesn’t exist.";
    }
    return "The operation couldn’t be completed. " + std::generic_category().message(code);
}

std::string LaunchError::description() const {
    return "Error Domain=" + domain + " Code=" + std::to_string(code) + " \"" +
           localizedDescription() + "\" UserInfo={NSFilePath=" + path + "}";
}

std::vector<char*> execVector(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::shared_ptr<Process> makePosixProcess() {
    return std::make_shared<PosixProcess>();
}

}  // namespace bonkora::platform
