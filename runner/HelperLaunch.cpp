#include "runner/HelperLaunch.h"

#include <spawn.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "platform/Process.h"

namespace bonkora::runner {

HelperLaunch helperLaunch(const std::string& helperPath, const std::string& folder,
                          const ShellCommand& command, bool isRoot) {
    HelperLaunch launch{{helperPath, command.text, folder},
                        command.withAdministratorPrivileges && !isRoot};
    if (launch.throughPolkit) {
        // Without a desktop's agent it would ask on the terminal, and in the background wait there
        // for ever.
        launch.arguments.insert(launch.arguments.begin(), {"pkexec", "--disable-internal-agent"});
    }
    return launch;
}

platform::Result<pid_t, int> startHelper(const HelperLaunch& launch, int input, int errors) {
    std::vector<std::string> arguments = launch.arguments;
    const std::vector<char*> argv = platform::execVector(arguments);
    char* emptyEnvironment[] = {nullptr};

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes, &signals);
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);

    pid_t process = -1;
    const int error = ::posix_spawnp(&process, argv[0], &actions, &attributes, argv.data(),
                                     launch.throughPolkit ? emptyEnvironment : environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        return tl::unexpected(error);
    }
    return process;
}

}  // namespace bonkora::runner
