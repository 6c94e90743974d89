// bonkora-elevated: runs one shell command for osascript, which starts it beside itself, or through
// polkit as root, and holds the other end of the socket on its standard input (ElevatedLink.h).
#include <sys/stat.h>
#include <unistd.h>

#include <exception>

#include "platform/Pipe.h"
#include "platform/StandardStreams.h"
#include "runner/Supervisor.h"

int main(int argumentCount, char* arguments[]) {
    using namespace bonkora;
    platform::prepareStandardStreams();
    struct stat input {};
    if (argumentCount != 3 || ::fstat(STDIN_FILENO, &input) != 0 || !S_ISSOCK(input.st_mode)) {
        platform::writeAll(STDERR_FILENO, "bonkora-elevated is started by osascript alone.\n");
        return 2;
    }
    // pkexec moved to root's home. A folder that root may not enter is no reason to give up.
    [[maybe_unused]] const int entered = ::chdir(arguments[1]);
    try {
        return runner::Supervisor(STDIN_FILENO).run(arguments[2]);
    } catch (const std::exception&) {
        platform::writeAll(STDERR_FILENO, "The system has no room for another command.\n");
        return 1;
    }
}
