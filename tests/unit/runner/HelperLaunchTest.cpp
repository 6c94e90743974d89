#include "runner/HelperLaunch.h"

#include <gtest/gtest.h>

namespace bonkora::runner {
namespace {

using Words = std::vector<std::string>;

TEST(HelperLaunch, asksPolkitForAdministratorPrivileges) {
    const auto launch = helperLaunch("/B/helper", "/home/u", {"a \"b\"", true, {}}, false);
    EXPECT_EQ(launch.arguments,
              (Words{"pkexec", "--disable-internal-agent", "/B/helper", "a \"b\"", "/home/u"}));
    EXPECT_TRUE(launch.throughPolkit);
}

TEST(HelperLaunch, asksNobodyWithoutPrivilegesOrForRoot) {
    for (const auto& launch : {helperLaunch("/B/helper", "/", {"a", false, {}}, false),
                               helperLaunch("/B/helper", "/", {"a", true, {}}, true),
                               helperLaunch("/B/helper", "/", {"a", false, {}}, true)}) {
        EXPECT_EQ(launch.arguments, (Words{"/B/helper", "a", "/"}));
        EXPECT_FALSE(launch.throughPolkit);
    }
}

}  // namespace
}  // namespace bonkora::runner
