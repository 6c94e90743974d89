#include "runner/HelperProcess.h"

#include <spawn.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "runner/ExecVector.h"

namespace bonkora::runner {

int startHelper(const HelperLaunch& launch, int input, int errors, pid_t& process) {
    std::vector<std::string> arguments = launch.arguments;
    const std::vector<char*> argv = execVector(arguments);
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

    const int error = ::posix_spawnp(&process, argv[0], &actions, &attributes, argv.data(),
                                     launch.throughPolkit ? emptyEnvironment : environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

}  // namespace bonkora::runner
