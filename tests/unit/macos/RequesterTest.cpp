#include "detector/program/Requester.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace bonkora::detector {
namespace {

TEST(RequesterOnAMac, isTheRealUserOfAProgramThatRunsAsRoot) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can be another user";
    }
    // In a process of its own: the tests after this one are root's.
    EXPECT_EXIT(
        {
            const bool isSet = ::setreuid(65534, 0) == 0;
            const auto requester = findRequester();
            std::_Exit(isSet && requester && *requester && (*requester)->user == 65534 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(RequesterOnAMac, isOtherwiseTheOneAtTheScreenAndNeverRoot) {
    struct stat console {};
    const bool isThere = ::stat("/dev/console", &console) == 0;
    const auto requester = findRequester();
    if (::geteuid() == 0 && isThere && console.st_uid != 0) {
        EXPECT_EQ(requester.value().value().user, console.st_uid);
    } else {
        EXPECT_EQ(requester.value(), std::nullopt);
    }
}

}  // namespace
}  // namespace bonkora::detector
