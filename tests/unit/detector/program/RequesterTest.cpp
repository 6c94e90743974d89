#include "detector/program/Requester.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace bonkora::detector {

namespace {

class RequesterTest : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only root can give its rights up";
        }
    }
    void TearDown() override { ::unsetenv("PKEXEC_UID"); }
};

TEST_F(RequesterTest, withoutPolkitNobodyAsked) {
    ::unsetenv("PKEXEC_UID");
    EXPECT_EQ(findRequester().value(), std::nullopt);
    ::setenv("PKEXEC_UID", "0", 1);
    EXPECT_EQ(findRequester().value(), std::nullopt);
}

TEST_F(RequesterTest, aNumberThatIsNoUsersIsRefused) {
    for (const char* const text : {"", "abc", "-1", "4294967295", "4294967294", "1e3", " 5"}) {
        ::setenv("PKEXEC_UID", text, 1);
        EXPECT_FALSE(findRequester()) << text;
    }
}

TEST_F(RequesterTest, becomingAUserLeavesNoWayBack) {
    ::setenv("PKEXEC_UID", "65534", 1);
    const auto requester = findRequester();
    ASSERT_TRUE(requester && *requester);
    const Requester& user = **requester;
    // In a process of its own: there is no way back.
    EXPECT_EXIT(
        {
            const bool became = become(user) && ::getuid() == 65534 && ::geteuid() == 65534 &&
                                ::getgid() == user.group && ::setuid(0) != 0 &&
                                ::getenv("HOME") == user.home;
            std::_Exit(became ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(RequesterTest, aRuntimeFolderThatIsNotTheUsersIsForgotten) {
    EXPECT_EXIT(
        {
            ::setenv("XDG_RUNTIME_DIR", "/run/user/0", 1);
            const bool became = become({65534, 65534, "nobody", "/nonexistent", ""});
            std::_Exit(became && ::getenv("XDG_RUNTIME_DIR") == nullptr ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace

}  // namespace bonkora::detector
