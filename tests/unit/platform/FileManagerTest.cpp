#include "platform/FileManager.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace bonkora::platform {
namespace {

namespace fs = std::filesystem;

mode_t permissionsOf(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

class FileManager : public testing::Test {
  protected:
    test::TemporaryFolder folder;
};

TEST_F(FileManager, anythingAtAllCountsAsExisting) {
    EXPECT_TRUE(fileExists(folder.write("file", "")));
    EXPECT_TRUE(fileExists(folder.makeFolder("folder")));
    fs::create_symlink(folder / "file", folder / "link");
    EXPECT_TRUE(fileExists(folder / "link"));
}

TEST_F(FileManager, aLinkToNothingDoesNotExist) {
    fs::create_symlink(folder / "nowhere", folder / "link");
    EXPECT_FALSE(fileExists(folder / "link"));
    EXPECT_FALSE(fileExists(folder / "absent"));
    EXPECT_FALSE(fileExists(""));
}

TEST_F(FileManager, writingReplacesAnEarlierFileAndLeavesNothingBeside) {
    const auto path = folder.write("script", "a longer text than the new one");
    EXPECT_TRUE(writeAtomically(path, "new"));
    EXPECT_EQ(test::readFile(path), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST_F(FileManager, writingReplacesALinkAndSparesWhatItPointsTo) {
    const auto precious = folder.write("precious", "keep");
    fs::create_symlink(precious, folder / "script");
    EXPECT_TRUE(writeAtomically(folder / "script", "new"));
    EXPECT_EQ(test::readFile(precious), "keep");
    EXPECT_EQ(test::readFile(folder / "script"), "new");
    EXPECT_FALSE(fs::is_symlink(folder / "script"));
}

TEST_F(FileManager, aFailedWriteLeavesNothingBehind) {
    EXPECT_FALSE(writeAtomically(folder / "missing/script", "text"));
    folder.makeFolder("script");
    EXPECT_FALSE(writeAtomically(folder / "script", "text"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST_F(FileManager, aFullDiskFailsTheWriteAndKeepsTheOldFile) {
    const auto path = folder.write("script", "old");
    // A process may write no file beyond its limit: the nearest thing to a full disk there is.
    EXPECT_EXIT(
        {
            ::signal(SIGXFSZ, SIG_IGN);
            rlimit tiny{};
            tiny.rlim_cur = tiny.rlim_max = 4;
            ::setrlimit(RLIMIT_FSIZE, &tiny);
            std::_Exit(writeAtomically(path, "longer than that") ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(test::readFile(path), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST_F(FileManager, setsPermissionsButNeverThroughALink) {
    const auto path = folder.write("file", "");
    EXPECT_TRUE(setPermissions(path, 0600));
    fs::create_symlink(path, folder / "link");
    EXPECT_FALSE(setPermissions(folder / "link", 0755));
    EXPECT_EQ(permissionsOf(path), 0600U);
    EXPECT_TRUE(setPermissions(path, 0755));
    EXPECT_EQ(permissionsOf(path), 0755U);
}

TEST_F(FileManager, makesANamedPipeOnceAndLeavesItAsItIs) {
    const auto path = folder / "pipe";
    const mode_t mask = ::umask(022);
    EXPECT_TRUE(makeNamedPipe(path, 0644));
    ::umask(mask);
    EXPECT_EQ(permissionsOf(path), 0644U);
    EXPECT_TRUE(setPermissions(path, 0600));
    EXPECT_FALSE(makeNamedPipe(path, 0644));
    EXPECT_EQ(permissionsOf(path), 0600U);
    EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(FileManager, removesANameAndSparesWhatALinkPointsTo) {
    const auto precious = folder.write("precious", "keep");
    fs::create_symlink(precious, folder / "link");
    EXPECT_TRUE(removeItem(folder / "link"));
    EXPECT_FALSE(removeItem(folder / "link"));
    EXPECT_EQ(test::readFile(precious), "keep");
    EXPECT_FALSE(removeItem(folder.makeFolder("folder")));
}

}  // namespace
}  // namespace bonkora::platform
