// RunnerUnderTest: the real osascript as a child of the test, its two outputs apart. Everything
// that waits gives up after some seconds by throwing std::runtime_error. Killed with its command
// when the test is over.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Descriptor.h"

namespace bonkora::test {

class RunnerUnderTest {
  public:
    struct Settings {
        std::string folder = BONKORA_HELPERS;  // that holds the programs
        std::map<std::string, std::string> environment = {{"PATH", "/usr/bin:/bin"}};
        // Runs in the child, right before the program takes its place.
        std::function<void()> beforeExec = [] {};
    };

    RunnerUnderTest(const std::vector<std::string>& arguments, const Settings& settings);
    explicit RunnerUnderTest(const std::vector<std::string>& arguments)
        : RunnerUnderTest(arguments, Settings{}) {}
    RunnerUnderTest(const RunnerUnderTest&) = delete;
    RunnerUnderTest& operator=(const RunnerUnderTest&) = delete;
    ~RunnerUnderTest();

    pid_t process() const { return child; }
    void signal(int number) const;
    // The elevated side, once it runs.
    pid_t elevatedSide() const;

    // The next line of its standard output, without the line feed.
    std::string readLine();
    // A line that holds the number of a process.
    pid_t readProcess() { return std::stoi(readLine()); }
    // The rest of its standard output, once nobody can write there any more.
    std::string readRest();
    // Nobody reads its standard output from here on.
    void closeOutput() { output.reset(); }
    // All of its standard error.
    std::string readErrors();

    // Its exit status, or minus the number of the signal that ended it.
    int waitForStatus() { return *waitForStatus(std::chrono::seconds(20)); }
    // Nothing when it did not end within that time.
    std::optional<int> waitForStatus(std::chrono::milliseconds time);

  private:
    pid_t child = -1;
    platform::UniqueDescriptor output;
    platform::UniqueDescriptor errors;
    std::string unread;
};

// What becomes of a runner that nobody disturbs.
struct Result {
    int status = 0;
    std::string output;
    std::string errors;
};
Result resultOf(const std::vector<std::string>& arguments,
                const RunnerUnderTest::Settings& settings = {});

// Gives up the rights of root for good, where the test has them; in beforeExec.
void becomePlainUser();

// Copies both programs where any user may run them, wherever the build is.
void copyPrograms(const std::string& folder);

// Prints the shell's own number as the test knows it: in a PID namespace $$ is another.
inline const std::string sayNumber = "read -r me rest </proc/self/stat; echo $me; ";

// The script that runs `command`, as the application would write it.
std::string scriptFor(std::string_view command, bool withAdministratorPrivileges = false);

}  // namespace bonkora::test
