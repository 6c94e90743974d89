// osascript: the privileged runner, for systems that have none of that name. It runs the shell
// command of a one-statement script (Script.h), as the administrator where the script says so. The
// command writes straight to the runner's standard output. If it does not succeed, the runner
// prints one line (Failure.h) and ends with status 1. Asked to end by a signal, or left without a
// reader of its output, it ends with status 0. However it ends, the command and all it started end
// with it.
//
// The command runs in a second program beside this one, bonkora-elevated, which polkit starts as
// root if privileges are asked for.
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "platform/Descriptor.h"
#include "platform/FileManager.h"
#include "platform/SignalDescriptor.h"
#include "platform/System.h"
#include "runner/CommandRun.h"
#include "runner/Failure.h"
#include "runner/HelperLaunch.h"
#include "runner/PromptText.h"
#include "runner/Script.h"

namespace {

using namespace bonkora;
using namespace bonkora::runner;

// The real path of bonkora-elevated, or nothing where it cannot be run.
std::optional<std::string> helperPath() {
    const auto own = platform::currentExecutablePath();
    if (!own) {
        return std::nullopt;
    }
    std::string path = std::string(platform::parentFolder(*own)) + "/bonkora-elevated";
    return ::access(path.c_str(), X_OK) == 0 ? std::optional(std::move(path)) : std::nullopt;
}

// Where the command is to run: the root of all folders if this one has been removed, or has a name
// that the prompt could not show.
std::string workingFolder() {
    std::error_code removed;
    std::string folder = std::filesystem::current_path(removed).string();
    return removed || whyNotShown(folder) ? "/" : folder;
}

std::optional<Failure> runCommand(const ShellCommand& command) try {
    const platform::SignalDescriptor endSignals{SIGTERM, SIGINT, SIGHUP};
    const auto helper = helperPath();
    if (!helper) {
        return Failure{"bonkora-elevated is missing beside osascript.", fileNotFound};
    }
    // bonkora-elevated looks for itself; but what it will refuse needs no password first.
    if (const auto why = whyNotShown(command.text)) {
        return Failure{"The command was refused: it holds " + *why + '.', 1};
    }
    const auto launch = helperLaunch(*helper, workingFolder(), command, ::geteuid() == 0);
    return CommandRun(endSignals).run(launch);
} catch (const std::system_error& error) {
    return systemFailure(error.code().value());
}

int reported(const std::string& line) {
    platform::writeAll(STDERR_FILENO, line);
    return 1;
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
    platform::prepareStandardStreams();
    const auto script = scriptFromArguments({arguments + 1, arguments + argumentCount});
    if (!script) {
        platform::writeAll(STDERR_FILENO, usage);
        return 2;
    }
    const auto command = parseScript(*script);
    if (!command) {
        return reported(syntaxErrorLine(command.error()));
    }
    if (const auto failure = runCommand(*command)) {
        return reported(executionErrorLine(command->range, *failure));
    }
    return 0;
}
