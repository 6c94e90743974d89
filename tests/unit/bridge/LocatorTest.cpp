#include "bridge/Locator.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using Candidates = std::vector<std::string>;

// What a start finds, told by the console.
std::string foundBy(const test::TestPlatform& system, const platform::Bundle& bundle) {
    platform::Platform platform = system.value();
    platform.bundle = bundle;
    const auto wrapper = SpankWrapper::create(platform);
    system.console->take();
    wrapper->start();
    return system.console->take().front();
}

class Locator : public testing::Test {
  protected:
    test::TestPlatform system;
    test::TemporaryFolder folder;
    platform::Bundle bundle{folder / "App/Contents/MacOS/bonkora", {"bonkora"}};
    const std::string development = folder / "App/Contents/MacOS/../../Resources/spank";
};

TEST_F(Locator, candidatesStandInTheirOrderAsTheyWereBuilt) {
    const auto resource = folder.write("App/Contents/Resources/spank", "");
    EXPECT_EQ(candidatePaths(bundle),
              (Candidates{development, resource, folder / "App/Contents/MacOS/spank",
                          "/usr/local/src/Bonkora/Resources/spank"}));
}

TEST_F(Locator, aResourceThatIsNotThereIsNoCandidate) {
    EXPECT_EQ(candidatePaths(bundle),
              (Candidates{development, folder / "App/Contents/MacOS/spank", fixedDevelopmentPath}));
}

TEST_F(Locator, anInstalledApplicationFindsItsBundledResource) {
    const auto resource = folder.write("App/Contents/Resources/spank", "");
    EXPECT_EQ(foundBy(system, bundle), "🔧 Found spank at: " + resource);
}

TEST_F(Locator, aDevelopmentCopyWinsOverTheBundleAndKeepsItsDots) {
    folder.write("App/Contents/Resources/spank", "");
    folder.makeFolder("App/Contents/MacOS");
    folder.write("App/Resources/spank", "");
    EXPECT_EQ(foundBy(system, bundle), "🔧 Found spank at: " + development);
}

TEST_F(Locator, oneBesideTheExecutableIsFound) {
    const auto beside = folder.write("App/Contents/MacOS/spank", "");
    EXPECT_EQ(foundBy(system, bundle), "🔧 Found spank at: " + beside);
}

TEST_F(Locator, aFolderNamedSpankCountsAsFound) {
    const auto resource = folder.makeFolder("App/Contents/Resources/spank");
    EXPECT_EQ(foundBy(system, bundle), "🔧 Found spank at: " + resource);
}

TEST_F(Locator, aFileWithoutExecutePermissionCountsAsFound) {
    const auto resource = folder.write("App/Contents/Resources/spank", "");
    std::filesystem::permissions(resource, std::filesystem::perms::none);
    EXPECT_EQ(foundBy(system, bundle), "🔧 Found spank at: " + resource);
}

TEST_F(Locator, aLinkIsFollowed) {
    folder.makeFolder("App/Contents/MacOS");
    std::filesystem::create_symlink(folder / "nowhere", folder / "App/Contents/MacOS/spank");
    EXPECT_EQ(foundBy(system, bundle), "❌ Could not find spank binary");
    folder.write("nowhere", "");
    EXPECT_EQ(foundBy(system, bundle),
              "🔧 Found spank at: " + (folder / "App/Contents/MacOS/spank"));
}

TEST_F(Locator, withoutAnExecutableLocationTheFirstArgumentServes) {
    const auto beside = folder.write("App/Contents/MacOS/spank", "");
    EXPECT_EQ(foundBy(system, {std::nullopt, {folder / "App/Contents/MacOS/bonkora"}}),
              "🔧 Found spank at: " + beside);
}

TEST_F(Locator, aRelativeFirstArgumentIsResolvedAgainstTheWorkingDirectory) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const auto candidates = candidatePaths({std::nullopt, {"bin/bonkora"}});
    const auto bare = candidatePaths({std::nullopt, {"bonkora"}});
    const auto here = std::filesystem::current_path().string();
    std::filesystem::current_path(before);
    EXPECT_EQ(candidates, (Candidates{here + "/bin/../../Resources/spank", here + "/bin/spank",
                                      fixedDevelopmentPath}));
    EXPECT_EQ(bare.at(1), here + "/spank");
}

TEST_F(Locator, neitherExecutableNorArgumentsIsAFatalError) {
    EXPECT_DEATH(candidatePaths({std::nullopt, {}}), "Fatal error: the process has no arguments\n");
}

TEST_F(Locator, everyStartOfOneControllerSearchesAnew) {
    const auto resource = folder.write("App/Contents/Resources/spank", "");
    const auto beside = folder.write("App/Contents/MacOS/spank", "");
    platform::Platform platform = system.value();
    platform.bundle = bundle;
    const auto wrapper = SpankWrapper::create(platform);
    const auto foundByAStart = [&] {
        system.console->take();
        wrapper->start();
        wrapper->isRunning = false;
        return system.console->take().front();
    };
    EXPECT_EQ(foundByAStart(), "🔧 Found spank at: " + resource);
    std::filesystem::remove(resource);
    EXPECT_EQ(foundByAStart(), "🔧 Found spank at: " + beside);
    std::filesystem::remove(beside);
    EXPECT_EQ(foundByAStart(), "❌ Could not find spank binary");
    folder.write("App/Contents/MacOS/spank", "");
    EXPECT_EQ(foundByAStart(), "🔧 Found spank at: " + beside);
    folder.write("App/Contents/Resources/spank", "");  // a better copy comes
    EXPECT_EQ(foundByAStart(), "🔧 Found spank at: " + resource);
    folder.write("App/Resources/spank", "");  // and the best
    EXPECT_EQ(foundByAStart(), "🔧 Found spank at: " + development);
}

}  // namespace
}  // namespace bonkora
