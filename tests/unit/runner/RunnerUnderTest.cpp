#include "tests/unit/runner/RunnerUnderTest.h"

#include <grp.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/Descriptor.h"
#include "platform/Process.h"
#include "tests/unit/runner/ProcessWatch.h"

namespace bonkora::test {
namespace {

constexpr std::chrono::milliseconds patience{20000};

// Appends what is there; false at the end of the output.
bool readSome(const platform::UniqueDescriptor& descriptor, std::string& text) {
    pollfd readable{descriptor.get(), POLLIN, 0};
    if (::poll(&readable, 1, static_cast<int>(patience.count())) != 1) {
        throw std::runtime_error("no output after \"" + text.substr(0, 200) + '"');
    }
    std::array<char, 65536> buffer;
    const ssize_t count = ::read(descriptor.get(), buffer.data(), buffer.size());
    if (count > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return count > 0;
}

}  // namespace

RunnerUnderTest::RunnerUnderTest(const std::vector<std::string>& arguments,
                                 const Settings& settings) {
    std::vector<std::string> words{settings.folder + "/osascript"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables;
    for (const auto& [name, value] : settings.environment) {
        variables.push_back(name);
        variables.back().append(1, '=').append(value);
    }
    const auto argv = platform::execVector(words);
    const auto environment = platform::execVector(variables);
    auto outputPipe = platform::Pipe::make();
    auto errorPipe = platform::Pipe::make();
    if (!outputPipe || !errorPipe) {
        throw std::runtime_error("no pipe");
    }
    child = ::fork();
    if (child == 0) {
        ::dup2(outputPipe->fileHandleForWriting.get(), STDOUT_FILENO);
        ::dup2(errorPipe->fileHandleForWriting.get(), STDERR_FILENO);
        settings.beforeExec();
        ::execve(argv[0], argv.data(), environment.data());
        ::_exit(99);
    }
    if (child < 0) {
        throw std::runtime_error("no process");
    }
    output = std::move(outputPipe->fileHandleForReading);
    errors = std::move(errorPipe->fileHandleForReading);
}

RunnerUnderTest::~RunnerUnderTest() {
    if (child > 0) {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
}

void RunnerUnderTest::signal(int number) const {
    ::kill(child, number);
}

std::string RunnerUnderTest::readLine() {
    std::size_t end = 0;
    while ((end = unread.find('\n')) == std::string::npos) {
        if (!readSome(output, unread)) {
            throw std::runtime_error("the output ended after \"" + unread + '"');
        }
    }
    std::string line = unread.substr(0, end);
    unread.erase(0, end + 1);
    return line;
}

std::string RunnerUnderTest::readRest() {
    while (readSome(output, unread)) {
    }
    return std::exchange(unread, {});
}

std::string RunnerUnderTest::readErrors() {
    std::string text;
    while (readSome(errors, text)) {
    }
    return text;
}

std::optional<int> RunnerUnderTest::waitForStatus(std::chrono::milliseconds time) {
    if (!ProcessWatch(child).endsWithin(time)) {
        return std::nullopt;
    }
    int status = 0;
    ::waitpid(std::exchange(child, -1), &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

pid_t RunnerUnderTest::elevatedSide() const {
    const std::string number = std::to_string(child);
    pid_t elevated = -1;
    std::ifstream("/proc/" + number + "/task/" + number + "/children") >> elevated;
    return elevated;
}

Result resultOf(const std::vector<std::string>& arguments,
                const RunnerUnderTest::Settings& settings) {
    RunnerUnderTest runner(arguments, settings);
    Result result;
    result.output = runner.readRest();
    result.errors = runner.readErrors();
    result.status = runner.waitForStatus();
    return result;
}

void becomePlainUser() {
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 &&
        (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
         ::setresuid(nobody, nobody, nobody) != 0)) {
        ::_exit(98);
    }
}

void copyPrograms(const std::string& folder) {
    std::filesystem::permissions(folder, std::filesystem::perms::all);
    for (const char* const name : {"osascript", "bonkora-elevated"}) {
        std::filesystem::copy(std::filesystem::path(BONKORA_HELPERS) / name,
                              std::filesystem::path(folder) / name);
    }
}

std::string scriptFor(std::string_view command, bool withAdministratorPrivileges) {
    std::string literal;
    for (const char c : command) {
        if (c == '"' || c == '\\') {
            literal += '\\';
        }
        literal += c;
    }
    return "do shell script \"" + literal + '"' +
           (withAdministratorPrivileges ? " with administrator privileges" : "");
}

}  // namespace bonkora::test
