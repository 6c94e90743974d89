// What the runner makes of a script and its command, with real processes.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/support/TemporaryFolder.h"
#include "tests/unit/runner/RunnerUnderTest.h"

namespace bonkora::test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

Result resultOfCommand(std::string_view command, const RunnerUnderTest::Settings& settings = {}) {
    return resultOf({"-e", scriptFor(command)}, settings);
}

TEST(RunnerProgram, endsWithStatusZeroWhenTheCommandDoes) {
    const Result result = resultOfCommand("echo good; echo careful >&2");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "good\n");
    EXPECT_EQ(result.errors, "");
}

TEST(RunnerProgram, reportsAFailingCommandWithItsNumber) {
    const Result result = resultOfCommand("exit 3");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "0:24: execution error: The command exited with a non-zero status. (3)\n");
}

TEST(RunnerProgram, reportsAFailingCommandWithWhatItSaid) {
    const Result result = resultOfCommand("echo boom >&2; exit 4");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "0:39: execution error: boom (4)\n");
}

TEST(RunnerProgram, reportsACommandKilledByASignal) {
    EXPECT_THAT(resultOfCommand("kill -9 $$").errors, EndsWith(" (137)\n"));
}

TEST(RunnerProgram, passesTheNumbersOfPkexecOnWhenTheyAreTheCommands) {
    EXPECT_THAT(resultOfCommand("exit 126").errors, EndsWith("status. (126)\n"));
    EXPECT_THAT(resultOfCommand("/no/such/program").errors, EndsWith("not found (127)\n"));
}

TEST(RunnerProgram, keepsTheEndOfALongErrorOutput) {
    const Result result = resultOfCommand(
        "head -c 10485760 /dev/zero | tr '\\0' 'x' >&2; printf '\\nthe end\\n' >&2; exit 5");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, StartsWith("0:99: execution error: xxxx"));
    EXPECT_THAT(result.errors, EndsWith("xxxx the end (5)\n"));
    // 4096 bytes, the last of which is the line feed that is dropped.
    EXPECT_EQ(result.errors.size(), std::string_view("0:99: execution error: ").size() + 4095 + 5);
}

TEST(RunnerProgram, reportsAScriptItDoesNotUnderstand) {
    const Result result = resultOf({"-e", "beep 2"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "0:4: syntax error: Expected do shell script and a text in double quotes. "
              "(-2741)\n");
}

TEST(RunnerProgram, tellsItsUsageWhenCalledWrongly) {
    for (const std::vector<std::string>& wrong :
         {std::vector<std::string>{}, {"-e"}, {"--help"}, {"-x", "y"}}) {
        const Result result = resultOf(wrong);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, StartsWith("usage: osascript -e "));
    }
}

TEST(RunnerProgram, takesSeveralTextsForTheLinesOfOneScript) {
    EXPECT_EQ(resultOf({"-e", "", "-e", "do shell script \"echo a\"", "-e", ""}).output, "a\n");
}

TEST(RunnerProgram, passesOutputOnUnchanged) {
    const Result result = resultOfCommand("printf 'a\\000\\r\\n\\n\\377\\303b'");
    EXPECT_EQ(result.output, std::string("a\0\r\n\n\xFF\xC3"
                                         "b",
                                         8));
}

TEST(RunnerProgram, passesALongOutputOnWhole) {
    EXPECT_EQ(resultOfCommand("head -c 20000000 /dev/zero").output.size(), 20000000U);
}

TEST(RunnerProgram, passesOutputOnAsItComes) {
    const TemporaryFolder folder;
    const std::string gate = folder / "gate";
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    RunnerUnderTest runner({"-e", scriptFor("echo one; read line <" + gate + "; echo $line")});
    EXPECT_EQ(runner.readLine(), "one");
    std::ofstream(gate) << "two\n";
    EXPECT_EQ(runner.readRest(), "two\n");
    EXPECT_EQ(runner.waitForStatus(), 0);
}

TEST(RunnerProgram, handsTheShellEveryCharacterOfTheCommand) {
    EXPECT_EQ(resultOfCommand(R"(A='$x "y" \z'; printf '%s|' "$A" "\\ \"q\" \$HOME" 'é👋' `echo b`)")
                  .output,
              R"($x "y" \z|\ "q" $HOME|é👋|b|)");
}

TEST(RunnerProgram, givesTheCommandASmallEnvironment) {
    RunnerUnderTest::Settings settings;
    settings.environment = {{"PATH", "/tmp/elsewhere"}, {"HOME", "/home/u"}, {"PKEXEC_UID", "7"},
                            {"LD_DEBUG", ""},           {"TMPDIR", "/x"},    {"LANG", "de_DE"}};
    EXPECT_EQ(resultOfCommand("tr '\\0' '\\n' </proc/self/environ", settings).output,
              "PATH=/usr/bin:/bin:/usr/sbin:/sbin\nHOME=/home/u\nPKEXEC_UID=7\n");
}

TEST(RunnerProgram, runsTheCommandInItsOwnWorkingDirectory) {
    const TemporaryFolder folder;
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [&] { (void)!::chdir(folder.path().c_str()); };
    EXPECT_EQ(resultOfCommand("pwd -P", settings).output,
              std::filesystem::canonical(folder.path()).string() + "\n");
}

TEST(RunnerProgram, givesTheCommandNothingToReadAndNoTerminal) {
    const Result result = resultOfCommand(
        "cat; readlink /proc/self/fd/0; read -r stat </proc/self/stat; set -- $stat; echo $(($6 == "
        "$1)) $7");
    EXPECT_EQ(result.output, "/dev/null\n1 0\n");
}

TEST(RunnerProgram, givesTheCommandNoDescriptorBesidesTheStandardOnes) {
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [] { ::dup2(STDOUT_FILENO, 50); };
    // The fourth is the listing's own.
    EXPECT_EQ(resultOfCommand("ls /proc/self/fd", settings).output, "0\n1\n2\n3\n");
}

TEST(RunnerProgram, givesTheCommandTheDefaultSignals) {
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [] {
        for (const int number : {SIGTERM, SIGINT, SIGCHLD, SIGPIPE, SIGUSR1}) {
            ::signal(number, SIG_IGN);
        }
        sigset_t all;
        ::sigfillset(&all);
        ::sigprocmask(SIG_SETMASK, &all, nullptr);
    };
    // The C library keeps 32 and 33 for itself, and leaves them as it found them.
    EXPECT_THAT(
        resultOfCommand("grep -E '^Sig(Blk|Ign)' /proc/self/status", settings).output,
        testing::MatchesRegex("SigBlk:\t0000000000000000\nSigIgn:\t0000000[01][08]0000000\n"));
}

TEST(RunnerProgram, worksWithItsStandardStreamsClosed) {
    const TemporaryFolder folder;
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [] {
        for (const int descriptor : {0, 1, 2}) {
            ::close(descriptor);
        }
    };
    const Result result = resultOfCommand("echo lost; echo $(id -u) >" + folder / "file", settings);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(readFile(folder / "file"), std::to_string(::getuid()) + "\n");
}

TEST(RunnerProgram, endsWithItsStatusWhenNobodyReadsItsErrors) {
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [] {
        int ends[2];
        (void)!::pipe(ends);
        ::dup2(ends[1], STDERR_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
    };
    EXPECT_EQ(resultOfCommand("exit 4", settings).status, 1);
}

TEST(RunnerProgram, doesNotWaitForOthersWhoHoldTheErrorOutput) {
    const TemporaryFolder folder;
    const std::string gate = folder / "gate";
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    RunnerUnderTest runner(
        {"-e", scriptFor(sayNumber + "read line <" + gate + "; echo boom >&2; exit 4")});
    const std::string output = "/proc/" + std::to_string(runner.readProcess()) + "/fd/2";
    const platform::UniqueDescriptor holder(::open(output.c_str(), O_WRONLY | O_CLOEXEC));
    ASSERT_TRUE(holder);
    std::ofstream(gate) << "\n";
    EXPECT_EQ(runner.waitForStatus(std::chrono::seconds(10)), 1);
    EXPECT_THAT(runner.readErrors(), EndsWith("boom (4)\n"));
}

TEST(RunnerProgram, saysThatTheElevatedSideIsMissing) {
    TemporaryFolder folder;
    std::filesystem::copy(BONKORA_HELPERS "/osascript", folder / "osascript");
    RunnerUnderTest::Settings settings;
    settings.folder = folder.path();
    const Result result = resultOfCommand("echo good", settings);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "0:27: execution error: bonkora-elevated is missing beside osascript. (-43)\n");
}

TEST(RunnerProgram, saysThatNoDescriptorIsLeft) {
    for (rlim_t limit = 4; limit < 8; ++limit) {
        RunnerUnderTest::Settings settings;
        settings.beforeExec = [limit] {
            ::close_range(3, ~0U, 0);
            const rlimit few{limit, limit};
            ::setrlimit(RLIMIT_NOFILE, &few);
        };
        const Result result = resultOfCommand("echo good", settings);
        EXPECT_EQ(result.status, 1) << limit;
        EXPECT_EQ(result.errors,
                  "0:27: execution error: The command could not be started: "
                  "Too many open files. (24)\n")
            << limit;
    }
}

TEST(RunnerProgram, takesACommandThatBeginsWithADash) {
    EXPECT_THAT(resultOfCommand("-e; echo good").output, "good\n");
}

TEST(RunnerProgram, givesTheCommandTheSystemsUsualSettings) {
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [] {
        ::umask(0);
        for (const auto resource : {RLIMIT_CORE, RLIMIT_FSIZE, RLIMIT_STACK, RLIMIT_NOFILE}) {
            rlimit limit{};
            ::getrlimit(resource, &limit);
            limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 1000000);
            limit.rlim_cur = resource == RLIMIT_NOFILE ? 100 : limit.rlim_cur;
            ::setrlimit(resource, &limit);
        }
    };
    EXPECT_EQ(resultOfCommand("umask; ulimit -c; ulimit -f; ulimit -s; ulimit -n", settings).output,
              "0022\n0\nunlimited\n8192\n1024\n");
}

TEST(RunnerProgram, givesTheCommandTheKernelsOwnLimitsAsFarAsItMay) {
    constexpr rlim_t none = RLIM_INFINITY;
    constexpr rlim_t eightMebibytes = 8'388'608;
    const struct {
        __rlimit_resource resource;
        const char* name;
        rlim_t soft, hard;
    } usual[] = {
        {RLIMIT_CPU, "Max cpu time", none, none},
        {RLIMIT_FSIZE, "Max file size", none, none},
        {RLIMIT_DATA, "Max data size", none, none},
        {RLIMIT_STACK, "Max stack size", eightMebibytes, none},
        {RLIMIT_CORE, "Max core file size", 0, none},
        {RLIMIT_RSS, "Max resident set", none, none},
        {RLIMIT_AS, "Max address space", none, none},
        {RLIMIT_LOCKS, "Max file locks", none, none},
        {RLIMIT_RTTIME, "Max realtime timeout", none, none},
        {RLIMIT_NOFILE, "Max open files", 1024, 524'288},
        {RLIMIT_MEMLOCK, "Max locked memory", eightMebibytes, eightMebibytes},
        {RLIMIT_MSGQUEUE, "Max msgqueue size", 819'200, 819'200},
        {RLIMIT_NICE, "Max nice priority", 0, 0},
        {RLIMIT_RTPRIO, "Max realtime priority", 0, 0},
    };
    const auto text = [](rlim_t limit) {
        return limit == none ? std::string("unlimited") : std::to_string(limit);
    };
    const std::string limits = resultOfCommand("tr -s ' ' </proc/self/limits").output;
    for (const auto& limit : usual) {
        rlimit own{};
        ::getrlimit(limit.resource, &own);
        const auto line = [&](rlim_t highest) {
            return '\n' + std::string(limit.name) + ' ' + text(std::min(limit.soft, highest)) +
                   ' ' + text(highest) + ' ';
        };
        // Only the machine's own root may raise the upper limit.
        EXPECT_THAT(limits,
                    testing::AnyOf(testing::HasSubstr(line(limit.hard)),
                                   testing::HasSubstr(line(std::min(limit.hard, own.rlim_max)))));
    }
}

TEST(RunnerProgram, givesACommandOfRootTheUsualPriority) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may raise its priority again";
    }
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [] {
        ::setpriority(PRIO_PROCESS, 0, 7);
        std::ofstream("/proc/self/oom_score_adj") << "300";
    };
    EXPECT_EQ(resultOfCommand("nice; cat /proc/self/oom_score_adj", settings).output, "0\n0\n");
}

TEST(RunnerProgram, refusesACommandThatNoPromptCouldShow) {
    const std::string refused = "execution error: The command was refused: it holds ";
    EXPECT_THAT(resultOfCommand("echo bad # \xFF").errors,
                EndsWith(refused + "bytes that are not UTF-8. (1)\n"));
    EXPECT_THAT(resultOfCommand("echo bad\necho worse").errors,
                EndsWith(refused + "the control character U+000A. (1)\n"));
    EXPECT_EQ(resultOfCommand("echo bad\u200B").output, "");
}

TEST(RunnerProgram, runsTheCommandInTheRootFolderWhereItsOwnCannotBeShown) {
    for (const char* const name : {"a\nb", "a\xFF", "a                 b"}) {
        const TemporaryFolder folder;
        RunnerUnderTest::Settings settings;
        settings.beforeExec = [&, odd = folder.makeFolder(name)] { (void)!::chdir(odd.c_str()); };
        EXPECT_EQ(resultOfCommand("pwd -P", settings).output, "/\n") << name;
    }
}

TEST(RunnerProgram, runsTheCommandInTheRootFolderWhereItsOwnIsGone) {
    const TemporaryFolder folder;
    RunnerUnderTest::Settings settings;
    settings.beforeExec = [gone = folder.makeFolder("gone")] {
        (void)!::chdir(gone.c_str());
        ::rmdir(gone.c_str());
    };
    EXPECT_EQ(resultOfCommand("pwd -P", settings).output, "/\n");
}

}  // namespace
}  // namespace bonkora::test
