#include "runner/CommandProcess.h"

#include <gtest/gtest.h>

namespace bonkora::runner {
namespace {

using Words = std::vector<std::string>;

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

TEST(CommandEnvironment, tellsAllThatIsKnownOfTheUser) {
    EXPECT_EQ(commandEnvironment([](const char*) { return std::optional<std::string>("x"); }),
              (Words{"PATH=/usr/bin:/bin:/usr/sbin:/sbin", "HOME=x", "LOGNAME=x", "PKEXEC_UID=x",
                     "SHELL=x", "USER=x"}));
}

}  // namespace
}  // namespace bonkora::runner
