#include "platform/System.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace bonkora::platform {
namespace {

#ifndef __APPLE__
class TemporaryDirectory : public testing::Test {
  protected:
    // What the variables are set to for the length of a test; empty means unset.
    static std::string with(const std::string& tmpdir, const std::string& runtime) {
        const Variable first("TMPDIR", tmpdir);
        const Variable second("XDG_RUNTIME_DIR", runtime);
        return temporaryDirectory();
    }

  private:
    class Variable {
      public:
        Variable(const char* theName, const std::string& value) : name(theName) {
            if (const char* const present = std::getenv(name)) {
                before = present;
            }
            set(value);
        }
        Variable(const Variable&) = delete;
        Variable& operator=(const Variable&) = delete;
        ~Variable() { set(before); }

      private:
        void set(const std::string& value) const {
            value.empty() ? ::unsetenv(name) : ::setenv(name, value.c_str(), 1);
        }
        const char* const name;
        std::string before;
    };
};

TEST_F(TemporaryDirectory, endsInExactlyOneSlash) {
    EXPECT_EQ(with("/var/scratch", ""), "/var/scratch/");
    EXPECT_EQ(with("/var/scratch///", ""), "/var/scratch/");
    EXPECT_EQ(with("/", ""), "/");
}

TEST_F(TemporaryDirectory, isTmpdirThenTheRuntimeFolderThenTmp) {
    EXPECT_EQ(with("/a", "/b"), "/a/");
    EXPECT_EQ(with("", "/b"), "/b/");
    EXPECT_EQ(with("", ""), "/tmp/");
}

TEST(Runner, theRunnerIsTheBundlesOwnWhereTheSystemHasNone) {
    if (std::filesystem::exists("/usr/bin/osascript")) {
        GTEST_SKIP() << "this system has a runner of its own";
    }
    EXPECT_EQ(runnerPath("/opt/Bonkora.app/Contents/MacOS/bonkora"),
              "/opt/Bonkora.app/Contents/Helpers/osascript");
    EXPECT_EQ(runnerPath(std::nullopt), "/usr/bin/osascript");
}

TEST(Runner, theSystemsOwnIsTakenWhereItHasOne) {
    const test::TemporaryFolder folder;
    const auto path = folder / "osascript";
    const std::string executable = "/opt/Bonkora.app/Contents/MacOS/bonkora";
    const std::string ours = "/opt/Bonkora.app/Contents/Helpers/osascript";
    EXPECT_EQ(runnerPath(executable, path), ours);
    folder.write("osascript", "");
    EXPECT_EQ(runnerPath(executable, path), path);
    std::filesystem::remove(path);
    EXPECT_EQ(runnerPath(executable, path), ours);  // asked anew
}

#endif

}  // namespace
}  // namespace bonkora::platform
