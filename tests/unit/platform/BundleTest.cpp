#include "platform/Bundle.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace bonkora::platform {
namespace {

class BundleTest : public testing::Test {
  protected:
    test::TemporaryFolder folder;
};

TEST_F(BundleTest, resourcesLieInContentsResources) {
    const auto resource = folder.write("Bonkora.app/Contents/Resources/spank", "");
    const Bundle application{folder / "Bonkora.app/Contents/MacOS/bonkora", {}};
    EXPECT_EQ(application.pathForResource("spank"), resource);
    const Bundle helper{folder / "Bonkora.app/Contents/Helpers/osascript", {}};
    EXPECT_EQ(helper.pathForResource("spank"), resource);
}

TEST_F(BundleTest, anAbsentResourceHasNoPath) {
    folder.write("Bonkora.app/Contents/Resources/spank.txt", "");
    folder.write("Bonkora.app/Contents/MacOS/spank", "");
    const Bundle bundle{folder / "Bonkora.app/Contents/MacOS/bonkora", {}};
    EXPECT_EQ(bundle.pathForResource("spank"), std::nullopt);
}

TEST_F(BundleTest, anExecutableOutsideABundleHasItsOwnFolder) {
    const auto resource = folder.write("bin/spank", "");
    EXPECT_EQ((Bundle{folder / "bin/bonkora", {}}).pathForResource("spank"), resource);
}

TEST_F(BundleTest, withoutAnExecutableThereAreNoResources) {
    EXPECT_EQ((Bundle{std::nullopt, {"bonkora"}}).pathForResource("spank"), std::nullopt);
}

TEST_F(BundleTest, theMainBundleKnowsThisProgramAndItsArguments) {
    const char* const arguments[] = {"name", "one", "two"};
    const Bundle bundle = Bundle::main(3, arguments);
    EXPECT_EQ(bundle.arguments, (std::vector<std::string>{"name", "one", "two"}));
    ASSERT_TRUE(bundle.executablePath);
    EXPECT_EQ(std::filesystem::path(*bundle.executablePath).filename(), "platform_test");
}

}  // namespace
}  // namespace bonkora::platform
