#include "app/ProgramArguments.h"

#include <gmock/gmock.h>

#include <vector>

namespace bonkora {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::optional<programArguments::Answer> answerTo(const std::vector<const char*>& arguments) {
    return programArguments::answer(arguments);
}

TEST(ProgramArgumentsTest, withoutArgumentsTheApplicationStarts) {
    EXPECT_FALSE(answerTo({}));
}

TEST(ProgramArgumentsTest, helpAndVersionAreToldOnStandardOutput) {
    for (const char* asked : {"--help", "-h"}) {
        const auto answer = answerTo({asked});
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, 0);
        EXPECT_THAT(answer->output, HasSubstr("Usage: bonkora"));
        EXPECT_THAT(answer->error, IsEmpty());
    }
    EXPECT_THAT(answerTo({"--version"})->output, testing::StartsWith("bonkora "));
}

TEST(ProgramArgumentsTest, anUnknownOptionIsNamedOnStandardErrorWithAStatusOfItsOwn) {
    const auto answer = answerTo({"--loud", "--help"});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 2);
    EXPECT_THAT(answer->output, IsEmpty());
    EXPECT_THAT(answer->error, HasSubstr("--loud"));
}

}  // namespace
}  // namespace bonkora
