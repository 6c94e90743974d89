#include <gtest/gtest.h>

#include <cerrno>

#include "platform/Process.h"
#include "tests/support/TemporaryFolder.h"

namespace bonkora::platform {
namespace {

TEST(LaunchError, aMissingExecutableIsSaidInThePlatformsWords) {
    const auto error = LaunchError::fromErrno("/usr/bin/osascript", ENOENT);
    EXPECT_EQ(error.localizedDescription(), "The file “osascript” doesn’t exist.");
    EXPECT_EQ(error.description(),
              "Error Domain=NSCocoaErrorDomain Code=4 \"The file “osascript” doesn’t exist.\" "
              "UserInfo={NSFilePath=/usr/bin/osascript}");
}

TEST(LaunchError, oneWithoutExecutePermissionCountsAsMissing) {
    const test::TemporaryFolder folder;
    const auto path = folder.write("osascript", "");
    EXPECT_EQ(LaunchError::fromErrno(path, EACCES).localizedDescription(),
              "The file “osascript” doesn’t exist.");
}

TEST(LaunchError, aFolderIsALackOfPermission) {
    const test::TemporaryFolder folder;
    const auto path = folder.makeFolder("osascript");
    const auto error = LaunchError::fromErrno(path, EACCES);
    EXPECT_EQ(error.localizedDescription(),
              "The operation couldn’t be completed. Permission denied");
    EXPECT_EQ(error.description(),
              "Error Domain=NSPOSIXErrorDomain Code=13 \"The operation "
              "couldn’t be completed. Permission denied\" "
              "UserInfo={NSFilePath=" +
                  path + "}");
}

TEST(LaunchError, theDescriptorLimitIsNamed) {
    EXPECT_EQ(LaunchError::fromErrno("/x", EMFILE).localizedDescription(),
              "The operation couldn’t be completed. Too many open files");
}

}  // namespace
}  // namespace bonkora::platform
