#include "runner/HelperLaunch.h"

#include <gtest/gtest.h>

#include "runner/CommandEnvironment.h"

namespace bonkora::runner {
namespace {

using Words = std::vector<std::string>;

TEST(HelperLaunch, asksPolkitForAdministratorPrivileges) {
    const auto launch = helperLaunch("/B/helper", "/home/u", {"a \"b\"", true, {}}, false);
    EXPECT_EQ(launch.arguments,
              (Words{"pkexec", "--disable-internal-agent", "/B/helper", "/home/u", "a \"b\""}));
    EXPECT_TRUE(launch.throughPolkit);
}

TEST(HelperLaunch, asksNobodyWithoutPrivilegesOrForRoot) {
    for (const auto& launch : {helperLaunch("/B/helper", "/", {"a", false, {}}, false),
                               helperLaunch("/B/helper", "/", {"a", true, {}}, true),
                               helperLaunch("/B/helper", "/", {"a", false, {}}, true)}) {
        EXPECT_EQ(launch.arguments, (Words{"/B/helper", "/", "a"}));
        EXPECT_FALSE(launch.throughPolkit);
    }
}

TEST(CommandEnvironment, isSmallAndPassesOnWhoAsked) {
    const auto environment = commandEnvironment([](const char* name) {
        const std::string wanted = name;
        return wanted == "HOME"         ? std::optional<std::string>("/root")
               : wanted == "PKEXEC_UID" ? std::optional<std::string>("1000")
               : wanted == "PATH"       ? std::optional<std::string>("/tmp")
                                        : std::nullopt;
    });
    EXPECT_EQ(environment,
              (Words{"PATH=/usr/bin:/bin:/usr/sbin:/sbin", "HOME=/root", "PKEXEC_UID=1000"}));
}

}  // namespace
}  // namespace bonkora::runner
