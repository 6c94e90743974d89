// How the command's own process is started: with nothing to read, in a session of its own without a
// terminal, and with what the system usually gives a program, whatever the caller's settings were.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bonkora::runner {

// The command's environment, NAME=VALUE each: the system's own folders as PATH; who the command
// runs as; and in PKEXEC_UID, when polkit was asked, the number of the user who did. `own` looks a
// name up in the environment of this process, which polkit leaves only what pkexec sets. Pure.
std::vector<std::string> commandEnvironment(
    const std::function<std::optional<std::string>(const char* name)>& own);

// Starts /bin/sh with that command and returns its process; -1, and errno set, when there is no
// room. The child itself says on `link` that it has started. It is killed when this process ends
// before it.
pid_t startCommand(const std::string& command, int link);

}  // namespace bonkora::runner
