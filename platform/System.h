// What the operating systems do differently, with one source file for each. Any thread.
#pragma once

#include <spawn.h>

#include <optional>
#include <string>

namespace bonkora::platform {

// The running program's own file, absolute, links resolved; nothing where the system cannot tell.
std::optional<std::string> currentExecutablePath();

// The user's folder for temporary files, ending in exactly one slash. On macOS the system's own
// per-user folder, then TMPDIR, then /tmp/; elsewhere TMPDIR, XDG_RUNTIME_DIR, /tmp/. It need not
// exist.
std::string temporaryDirectory();

// The privileged runner to launch. On macOS always `systemRunner`. Elsewhere that same path when a
// file is there, and otherwise Contents/Helpers/osascript of the application folder that holds
// `executablePath` (the running program's). Asked anew at every launch.
std::string runnerPath(const std::optional<std::string>& executablePath,
                       const std::string& systemRunner = "/usr/bin/osascript");

// pipe(2), both ends closed on exec.
bool makePipe(int (&ends)[2]);

// Keeps every descriptor but 0, 1 and 2 from a child. Ours are closed on exec; this is for those
// of libraries that forgot to say so. Returns 0 or an error number, as posix_spawn does.
int keepStandardDescriptorsOnly(posix_spawn_file_actions_t& actions);

// The posix_spawn flags that this needs.
short systemSpawnFlags();

}  // namespace bonkora::platform
