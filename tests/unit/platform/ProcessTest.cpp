#include "platform/Process.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <thread>

#include "platform/Descriptor.h"
#include "tests/support/Box.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TemporaryFolder.h"

namespace {

// The name of the C library's function that has no memory left.
const char* failing = nullptr;

// What takes the place of the C library's function of that name.
template <typename Function, typename... Arguments>
int unlessFailing(const char* name, Function, Arguments... arguments) {
    if (failing != nullptr && std::string_view(failing) == name) {
        return ENOMEM;
    }
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name))(arguments...);
}

}  // namespace

extern "C" {
int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t* actions, int from,
                                     int to) noexcept {
    return unlessFailing(__func__, &posix_spawn_file_actions_adddup2, actions, from, to);
}
int posix_spawn_file_actions_addclosefrom_np(posix_spawn_file_actions_t* actions,
                                             int from) noexcept {
    return unlessFailing(__func__, &posix_spawn_file_actions_addclosefrom_np, actions, from);
}
int posix_spawnattr_setflags(posix_spawnattr_t* attributes, short flags) noexcept {
    return unlessFailing(__func__, &posix_spawnattr_setflags, attributes, flags);
}
int posix_spawnattr_setpgroup(posix_spawnattr_t* attributes, pid_t group) noexcept {
    return unlessFailing(__func__, &posix_spawnattr_setpgroup, attributes, group);
}
int posix_spawnattr_setsigmask(posix_spawnattr_t* attributes, const sigset_t* set) noexcept {
    return unlessFailing(__func__, &posix_spawnattr_setsigmask, attributes, set);
}
int posix_spawnattr_setsigdefault(posix_spawnattr_t* attributes, const sigset_t* set) noexcept {
    return unlessFailing(__func__, &posix_spawnattr_setsigdefault, attributes, set);
}
}

namespace bonkora::platform {
namespace {

using namespace std::chrono_literals;

// A shell that runs `script`, and everything it tells, gathered off the test's thread.
class Shell {
  public:
    explicit Shell(const std::string& script) {
        process->executablePath = "/bin/sh";
        process->arguments = {"-c", script};
        process->readabilityHandler = [state = state](std::string_view chunk) {
            if (chunk.empty()) {
                state->output.put(state->text);
            }
            state->text += chunk;
        };
        process->terminationHandler = [state = state](int status) { state->status.put(status); };
    }

    std::shared_ptr<Process> process = makePosixProcess();

    // All of the output, once it has ended.
    std::string output() const { return state->output.take(); }
    int status() const { return state->status.take(); }

  private:
    struct State {
        std::string text;
        test::Box<std::string> output;  // takes the end but once
        test::Box<int> status;
    };
    const std::shared_ptr<State> state = std::make_shared<State>();
};

TEST(Process, passesTheArgumentsOnAndTheWholeOutputBack) {
    Shell shell("");
    shell.process->arguments = {"-c",  "printf '%s|' \"$@\"; printf end >&2", "sh", "a b", "",
                                "\"$x"};
    EXPECT_TRUE(shell.process->run());
    EXPECT_EQ(shell.output(), "a b||\"$x|end");
    EXPECT_EQ(shell.status(), 0);
}

TEST(Process, tellsTheExitCode) {
    Shell shell("exit 37");
    ASSERT_TRUE(shell.process->run());
    EXPECT_EQ(shell.status(), 37);
    EXPECT_FALSE(shell.process->isRunning());
}

TEST(Process, tellsTheSignalThatEndedTheChild) {
    Shell shell("kill -KILL $$");
    ASSERT_TRUE(shell.process->run());
    EXPECT_EQ(shell.status(), SIGKILL);
}

TEST(Process, terminateAsksPolitely) {
    Shell shell("trap 'exit 5' TERM; echo ready; while :; do sleep 0.02; done");
    test::Box<bool> ready;
    const auto gather = shell.process->readabilityHandler;
    shell.process->readabilityHandler = [&, gather, told = false](std::string_view chunk) mutable {
        if (!told) {
            ready.put(true);
        }
        told = true;
        gather(chunk);
    };
    ASSERT_TRUE(shell.process->run());
    ready.take();
    EXPECT_TRUE(shell.process->isRunning());
    shell.process->terminate();
    EXPECT_EQ(shell.status(), 5);
}

TEST(Process, terminateBeforeTheStartAndAfterTheEndDoesNothing) {
    Shell shell("exit 0");
    shell.process->terminate();
    EXPECT_EQ(shell.process->processIdentifier(), 0);
    ASSERT_TRUE(shell.process->run());
    EXPECT_EQ(shell.status(), 0);
    shell.process->terminate();
}

TEST(Process, terminateReachesThatProcessAlone) {
    const test::TemporaryFolder folder;
    // A child that would end with its parent's group, and says so long as it does not.
    Shell shell("(: > " + (folder / "there") + "; while [ ! -e " + (folder / "go") +
                " ]; do sleep 0.01; done; echo survived) & wait");
    ASSERT_TRUE(shell.process->run());
    while (!std::filesystem::exists(folder / "there")) {
        std::this_thread::yield();
    }
    shell.process->terminate();
    EXPECT_EQ(shell.status(), SIGTERM);
    folder.write("go", "");
    EXPECT_EQ(shell.output(), "survived\n");
}

TEST(Process, aGrandchildMayHoldTheOutputOpenAfterTheEnd) {
    Shell shell("(sleep 0.2; echo later) & echo now");
    ASSERT_TRUE(shell.process->run());
    EXPECT_EQ(shell.status(), 0);
    EXPECT_EQ(shell.output(), "now\nlater\n");
}

TEST(Process, aChildThatClosesItsOutputLivesOn) {
    const test::TemporaryFolder folder;
    Shell shell("exec >&- 2>&-; while [ ! -e " + (folder / "go") +
                " ]; do sleep 0.01; done; exit 3");
    ASSERT_TRUE(shell.process->run());
    EXPECT_EQ(shell.output(), "");
    EXPECT_TRUE(shell.process->isRunning());
    folder.write("go", "");
    EXPECT_EQ(shell.status(), 3);
}

TEST(Process, lettingTheHandleGoLeavesTheChildUndisturbed) {
    Shell shell("sleep 0.1; head -c 300000 /dev/zero; exit 4");
    ASSERT_TRUE(shell.process->run());
    shell.process.reset();
    EXPECT_EQ(shell.output().size(), 300000U);
    EXPECT_EQ(shell.status(), 4);
}

TEST(Process, aChunkIsAtMost64KiB) {
    Shell shell("head -c 1000000 /dev/zero");
    std::size_t largest = 0;
    const auto gather = shell.process->readabilityHandler;
    shell.process->readabilityHandler = [&largest, gather](std::string_view chunk) {
        largest = std::max(largest, chunk.size());
        gather(chunk);
    };
    ASSERT_TRUE(shell.process->run());
    EXPECT_EQ(shell.output().size(), 1000000U);
    EXPECT_LE(largest, 65536U);
}

TEST(Process, withoutHandlersItIsDrainedAndReaped) {
    const auto process = makePosixProcess();
    process->executablePath = "/bin/sh";
    process->arguments = {"-c", "head -c 1000000 /dev/zero"};
    ASSERT_TRUE(process->run());
    const int identifier = process->processIdentifier();
    while (::kill(identifier, 0) == 0) {
        ::sched_yield();
    }
    EXPECT_EQ(errno, ESRCH);
}

TEST(Process, theChildGetsOurInputAndOutputAndNothingElse) {
    const UniqueDescriptor leak(::open("/dev/null", O_RDONLY));  // not closed on exec
    ASSERT_TRUE(leak);
    Shell shell("ls /proc/self/fd | wc -l");  // 0, 1, 2 and the listing's own
    ASSERT_TRUE(shell.process->run());
    EXPECT_EQ(std::stoi(shell.output()), 4);
}

TEST(Process, theChildHasAGroupOfItsOwnAndDefaultSignals) {
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto pipeHandler = ::signal(SIGPIPE, SIG_IGN);
    // By the shell alone: newer ones block every signal for as long as they fork.
    Shell shell(
        "while read -r name value; do case $name in SigBlk:|SigIgn:) echo $value ;; esac; done "
        "</proc/$$/status; ps -o pgid= -p $$");
    const auto started = shell.process->run();
    ::signal(SIGPIPE, pipeHandler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_TRUE(started);
    std::istringstream output(shell.output());
    unsigned long long nowBlocked = 0;
    unsigned long long nowIgnored = 0;
    int group = 0;
    output >> std::hex >> nowBlocked >> nowIgnored >> std::dec >> group;
    EXPECT_EQ(nowBlocked, 0U);
    // The C library keeps 32 and 33 to itself.
    EXPECT_EQ(nowIgnored & ~0x180000000ULL, 0U);
    EXPECT_EQ(group, shell.process->processIdentifier());
}

TEST(Process, aMissingExecutableIsReported) {
    const auto process = makePosixProcess();
    process->executablePath = "/nonexistent/osascript";
    const auto started = process->run();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().localizedDescription(), "The file “osascript” doesn’t exist.");
    EXPECT_FALSE(process->isRunning());
    EXPECT_EQ(process->processIdentifier(), 0);
}

TEST(Process, oneWithoutExecutePermissionIsReportedAsMissing) {
    const test::TemporaryFolder folder;
    const auto process = makePosixProcess();
    process->executablePath = folder.write("osascript", "#!/bin/sh\n");
    const auto started = process->run();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().code, 4);
}

TEST(Process, aFolderIsReportedAsALackOfPermission) {
    const test::TemporaryFolder folder;
    const auto process = makePosixProcess();
    process->executablePath = folder.path();
    const auto started = process->run();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().domain, "NSPOSIXErrorDomain");
    EXPECT_EQ(started.error().code, EACCES);
}

// The reader closes its end a moment after it has told the end.
long descriptorsOnceSettled(long expected) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (test::openDescriptors() != expected && std::chrono::steady_clock::now() < deadline) {
        ::sched_yield();
    }
    return test::openDescriptors();
}

TEST(Process, startsAndFailedStartsLeaveNoDescriptorBehind) {
    const long before = test::openDescriptors();
    for (int round = 0; round < 50; ++round) {
        Shell shell("echo text; exit 1");
        ASSERT_TRUE(shell.process->run());
        EXPECT_EQ(shell.output(), "text\n");
        EXPECT_EQ(shell.status(), 1);
        const auto failing = makePosixProcess();
        failing->executablePath = "/nonexistent";
        EXPECT_FALSE(failing->run());
    }
    EXPECT_EQ(descriptorsOnceSettled(before), before);
}

TEST(Process, withoutAFreeDescriptorTheStartFailsAndALaterOneWorks) {
    // The sanitizer takes a descriptor to look at a type that it sees for the first time.
    Shell first("exit 0");
    ASSERT_TRUE(first.process->run());
    EXPECT_EQ(first.status(), 0);
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    std::vector<UniqueDescriptor> taken;
    rlimit lower = limit;
    lower.rlim_cur = 64;
    ::setrlimit(RLIMIT_NOFILE, &lower);
    for (int descriptor = ::dup(0); descriptor >= 0; descriptor = ::dup(0)) {
        taken.emplace_back(descriptor);
    }
    Shell failing("exit 0");
    const auto started = failing.process->run();
    taken.clear();
    ::setrlimit(RLIMIT_NOFILE, &limit);
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().code, EMFILE);

    Shell working("exit 0");
    ASSERT_TRUE(working.process->run());
    EXPECT_EQ(working.status(), 0);
}

TEST(Process, manyAtOnceAllComeToTheirEnd) {
    std::vector<std::unique_ptr<Shell>> shells;
    for (int number = 0; number < 20; ++number) {
        shells.push_back(std::make_unique<Shell>("echo " + std::to_string(number) + "; exit " +
                                                 std::to_string(number)));
        ASSERT_TRUE(shells.back()->process->run());
    }
    for (int number = 0; number < 20; ++number) {
        EXPECT_EQ(shells[static_cast<std::size_t>(number)]->output(),
                  std::to_string(number) + "\n");
        EXPECT_EQ(shells[static_cast<std::size_t>(number)]->status(), number);
    }
}

TEST(Process, theChildInheritsStandardInputWorkingDirectoryAndEnvironment) {
    const test::TemporaryFolder folder;
    const UniqueDescriptor input(::open(folder.write("input", "from outside\n").c_str(), O_RDONLY));
    const UniqueDescriptor saved(::dup(STDIN_FILENO));
    const auto before = std::filesystem::current_path();
    ::dup2(input.get(), STDIN_FILENO);
    std::filesystem::current_path(folder.path());
    ::setenv("BONKORA_TEST", "told", 1);
    Shell shell("cat; pwd -P; echo $BONKORA_TEST");
    const auto started = shell.process->run();
    ::unsetenv("BONKORA_TEST");
    std::filesystem::current_path(before);
    ::dup2(saved.get(), STDIN_FILENO);
    ASSERT_TRUE(started);
    EXPECT_EQ(shell.output(),
              "from outside\n" + std::filesystem::canonical(folder.path()).string() + "\ntold\n");
}

TEST(Process, anEndThatTheSystemDoesNotTellIsNotTakenForSuccess) {
    const auto before = ::signal(SIGCHLD, SIG_IGN);  // from now on nobody asks, and nothing is kept
    Shell shell("exit 0");
    const auto started = shell.process->run();
    EXPECT_TRUE(started);
    EXPECT_EQ(shell.status(), Process::unknownStatus);
    EXPECT_FALSE(shell.process->isRunning());
    ::signal(SIGCHLD, before);
}

TEST(Process, whatCannotBeSaidAboutTheChildFailsTheStart) {
    for (const char* const function :
         {"posix_spawn_file_actions_adddup2", "posix_spawn_file_actions_addclosefrom_np",
          "posix_spawnattr_setflags", "posix_spawnattr_setpgroup", "posix_spawnattr_setsigmask",
          "posix_spawnattr_setsigdefault"}) {
        failing = function;
        Shell shell("exit 0");
        const auto started = shell.process->run();
        failing = nullptr;
        ASSERT_FALSE(started) << function;
        EXPECT_EQ(started.error().code, ENOMEM);
    }
}

}  // namespace
}  // namespace bonkora::platform
