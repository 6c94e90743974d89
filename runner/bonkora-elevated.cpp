// bonkora-elevated: runs one shell command for osascript, which starts it beside itself, or through
// polkit as root, and holds the other end of the socket on its standard input (ElevatedLink.h).
//
//     bonkora-elevated COMMAND FOLDER
//
// The prompt shows these words, the command first. Before anything runs, what could deceive the
// reader of the prompt is refused.
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Descriptor.h"
#include "runner/ElevatedLink.h"
#include "runner/PromptText.h"
#include "runner/Supervisor.h"

namespace {

using namespace bonkora;

// Goes to that folder. Returns why not: the end of a sentence that begins with "it".
std::optional<std::string> enter(const std::string& folder) {
    if (folder.empty() || folder.front() != '/') {
        return "is not an absolute path";
    }
    std::array<char, PATH_MAX> real{};
    if (::chdir(folder.c_str()) != 0 || ::getcwd(real.data(), real.size()) == nullptr) {
        return "cannot be entered";
    }
    if (folder != real.data()) {
        return "leads to another folder";
    }
    return std::nullopt;
}

// A sentence for people; nothing when the command may run, and then this process is in its folder.
std::optional<std::string> whyRefused(const std::string& command, const std::string& folder) {
    if (const auto why = runner::whyNotShown(command)) {
        return "The command was refused: it holds " + *why + '.';
    }
    if (const auto why = runner::whyNotShown(folder)) {
        return "The command's folder was refused: it holds " + *why + '.';
    }
    if (const auto why = enter(folder)) {
        return "The command's folder was refused: it " + *why + '.';
    }
    return std::nullopt;
}

int fail(int status, std::string_view message) {
    platform::writeAll(STDERR_FILENO, std::string(message) + '\n');
    return status;
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
    platform::prepareStandardStreams();
    struct stat input {};
    if (argumentCount != 3 || ::fstat(STDIN_FILENO, &input) != 0 || !S_ISSOCK(input.st_mode)) {
        return fail(2, "bonkora-elevated is started by osascript alone.");
    }
    // Away from the terminal, whose keys would reach this process too.
    ::setsid();
    try {
        const std::string command = arguments[1];
        if (const auto why = whyRefused(command, arguments[2])) {
            return fail(1, *why);
        }
        const auto status = runner::superviseInNamespace(STDIN_FILENO, command);
        if (!status) {
            return 1;
        }
        const auto byte = static_cast<char>(*status);
        ::send(STDIN_FILENO, &byte, 1, MSG_NOSIGNAL);
        return *status;
    } catch (const std::exception&) {
        return fail(1, "The system has no room for another command.");
    }
}
