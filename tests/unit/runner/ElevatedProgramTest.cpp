// What the elevated side says when it is asked directly, past the runner that would not have.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/unit/runner/RunnerUnderTest.h"

namespace bonkora::test {
namespace {

// `descriptors` is how many the program may have at once, the link's other end not counted.
Result resultOfElevatedSide(const std::string& command, const std::string& folder,
                            rlim_t descriptors = 1000) {
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [&] {
        int ends[2];
        (void)!::socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
        ::dup2(ends[0], STDIN_FILENO);
        ::dup2(ends[1], 100);
        ::close_range(3, 99, 0);
        const rlimit few{descriptors, descriptors};
        ::setrlimit(RLIMIT_NOFILE, &few);
        ::execl(BONKORA_HELPERS "/bonkora-elevated", "bonkora-elevated", command.c_str(),
                folder.c_str(), nullptr);
    };
    return resultOf({}, settings);
}

TEST(ElevatedProgram, runsWhatThePromptCanShow) {
    const Result result = resultOfElevatedSide("echo 'good                '; pwd -P", "/usr");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "good                \n/usr\n");
}

TEST(ElevatedProgram, refusesWhatAPromptCannotShowBeforeAnythingRuns) {
    const std::vector<std::pair<std::string, std::string>> refused{
        {"echo bad # \xFF", "bytes that are not UTF-8"},
        {"echo bad\t", "the control character U+0009"},
        {"echo bad \x1B[8m", "the control character U+001B"},
        {"echo bad \u200B", "the invisible character U+200B"},
        {"echo                  bad", "more than sixteen blanks in a row"},
    };
    const TemporaryFolder folder;
    for (const auto& [text, why] : refused) {
        const Result command = resultOfElevatedSide(text, "/");
        EXPECT_EQ(command.status, 1);
        EXPECT_EQ(command.output, "");
        EXPECT_EQ(command.errors, "The command was refused: it holds " + why + ".\n");
        const Result place = resultOfElevatedSide("echo bad", folder.makeFolder(text));
        EXPECT_EQ(place.output, "");
        EXPECT_EQ(place.errors, "The command's folder was refused: it holds " + why + ".\n");
    }
}

TEST(ElevatedProgram, refusesAFolderThatIsNotTheOneShown) {
    const TemporaryFolder folder;
    const std::string real = std::filesystem::canonical(folder.makeFolder("real"));
    std::filesystem::create_symlink("real", folder / "link");
    const std::string file = folder.write("file", "");
    const std::vector<std::pair<std::string, std::string>> refused{
        {"usr", "is not an absolute path"},
        {"", "is not an absolute path"},
        {real + "/gone", "cannot be entered"},
        {file, "cannot be entered"},
        {folder / "link", "leads to another folder"},
        {real + "/../real", "leads to another folder"},
        {real + "/", "leads to another folder"},
    };
    for (const auto& [path, why] : refused) {
        const Result result = resultOfElevatedSide("echo bad", path);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "The command's folder was refused: it " + why + ".\n") << path;
    }
}

TEST(ElevatedProgram, saysThatTheSystemHasNoRoom) {
    // One is left, and the supervisor needs more.
    const Result result = resultOfElevatedSide("echo bad", "/", 4);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "The system has no room for another command.\n");
}

TEST(ElevatedProgram, refusesToRunByHand) {
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [] {
        ::execl(BONKORA_HELPERS "/bonkora-elevated", "bonkora-elevated", "echo bad", "/", nullptr);
    };
    const Result result = resultOf({}, settings);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "bonkora-elevated is started by osascript alone.\n");
}

}  // namespace
}  // namespace bonkora::test
