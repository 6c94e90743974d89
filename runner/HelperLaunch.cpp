#include "runner/HelperLaunch.h"

namespace bonkora::runner {

HelperLaunch helperLaunch(const std::string& helperPath, const std::string& directory,
                          const ShellCommand& command, bool isRoot) {
    HelperLaunch launch{{helperPath, directory, command.text},
                        command.withAdministratorPrivileges && !isRoot};
    if (launch.throughPolkit) {
        // Without a desktop's agent it would ask on the terminal, and in the background wait there
        // for ever.
        launch.arguments.insert(launch.arguments.begin(), {"pkexec", "--disable-internal-agent"});
    }
    return launch;
}

}  // namespace bonkora::runner
