#include "support/file/deviceRoot.h"
#include "support/file/fileTools.h"
#include "tests/file/freshRoot.h"

#include <filesystem>
#include <thread>

namespace {

using Names = std::vector<std::string>;

TEST_F(FreshRoot, RootIsPutBeforeAnAbsolutePath)
{
    EXPECT_EQ(devicePath("/rundata/x.ini"), onMachine("/rundata/x.ini").c_str());
    EXPECT_EQ(deviceGetRoot(), onMachine("").c_str());
}

TEST_F(FreshRoot, RelativeAndEmptyPathsStayAsTheyAre)
{
    EXPECT_EQ(devicePath("a/b"), "a/b");
    EXPECT_EQ(devicePath(""), "");
    EXPECT_EQ(devicePath(nullptr), "");
}

TEST_F(FreshRoot, DotsNeverLeadOutOfTheRoot)
{
    EXPECT_EQ(devicePath("/../../etc/passwd"), onMachine("/etc/passwd").c_str());
    EXPECT_EQ(devicePath("/a/../../../b/./c"), onMachine("/b/c").c_str());
    EXPECT_EQ(devicePath("/a/.."), onMachine("/").c_str());
    EXPECT_EQ(devicePath("/a..b/..c"), onMachine("/a..b/..c").c_str());
}

TEST(DeviceRoot, EmptyRootOfAPhoneLeavesPathsAlone)
{
    deviceSetRoot("/");
    EXPECT_EQ(devicePath("/etc/../etc/hosts"), "/etc/../etc/hosts");
    EXPECT_EQ(deviceGetRoot(), "");
}

TEST(DeviceRoot, SlashAtTheEndOfTheRootIsNotDoubled)
{
    deviceSetRoot("/some/where//");
    EXPECT_EQ(devicePath("/a"), "/some/where/a");
    deviceSetRoot(nullptr);
    EXPECT_EQ(devicePath("/a"), "/a");
}

TEST(DeviceRoot, RelativeRootIsTakenFromTheWorkingDirectory)
{
    char here[4096];
    ASSERT_NE(getcwd(here, sizeof(here)), nullptr);
    deviceSetRoot("sub");
    EXPECT_EQ(devicePath("/a"), (std::string(here) + "/sub/a").c_str());
    deviceSetRoot(nullptr);
}

TEST(DeviceRoot, EnvironmentGivesTheFirstRoot)
{
    // The root is read once in a process, so another one looks.
    if (getenv("HX_ROOT_CHILD")) {
        EXPECT_EQ(deviceGetRoot(), "/from/environment");
        return;
    }
    const std::string command = "HX_ROOT_CHILD=1 HX_SYSROOT=/from/environment/ '" +
                                std::filesystem::read_symlink("/proc/self/exe").string() +
                                "' --gtest_filter=DeviceRoot.EnvironmentGivesTheFirstRoot >/dev/null";
    EXPECT_EQ(system(command.c_str()), 0);
}

TEST_F(FreshRoot, AbsoluteLinkIsFollowedInsideTheRoot)
{
    makeFolder("/etc");
    makeFolder("/rundata");
    put("/rundata/pointercal", "1 2 3");
    ASSERT_EQ(symlink("/rundata/pointercal", onMachine("/etc/pointercal").c_str()), 0);
    EXPECT_EQ(devicePathFollow("/etc/pointercal"), onMachine("/rundata/pointercal").c_str());
    EXPECT_EQ(nuxDumpTextFileA("/etc/pointercal"), "1 2 3");
}

TEST_F(FreshRoot, RelativeLinkIsFollowedFromItsFolderAndKeptInside)
{
    makeFolder("/etc");
    ASSERT_EQ(symlink("../../../../b", onMachine("/etc/a").c_str()), 0);
    EXPECT_EQ(devicePathFollow("/etc/a"), onMachine("/b").c_str());
}

// The folders of these paths are there, so that nothing but their dots can lead elsewhere.
TEST_F(FreshRoot, DotsAreFollowedAsTheyStandAndKeptInside)
{
    makeFolder("/a");
    makeFolder("/a/b");
    EXPECT_EQ(devicePathFollow("/a/../../../etc/passwd"), onMachine("/etc/passwd").c_str());
    EXPECT_EQ(devicePathFollowFolder("/a/../../../etc/passwd"), onMachine("/etc/passwd").c_str());
    EXPECT_EQ(devicePathFollow("/a/b/../c"), onMachine("/a/c").c_str());
    EXPECT_EQ(devicePathFollow("/a/./b/c"), onMachine("/a/b/c").c_str());
    EXPECT_EQ(devicePathFollow("/a//b/c"), onMachine("/a/b/c").c_str());
    EXPECT_EQ(devicePathFollow("/a/b/"), onMachine("/a/b").c_str());
    EXPECT_EQ(devicePathFollow("/a/b/."), onMachine("/a/b").c_str());
}

TEST_F(FreshRoot, LinksInACircleEnd)
{
    ASSERT_EQ(symlink("/b", onMachine("/a").c_str()), 0);
    ASSERT_EQ(symlink("/a", onMachine("/b").c_str()), 0);
    EXPECT_EQ(devicePathFollow("/a"), onMachine("/a").c_str());
    EXPECT_EQ(nuxDumpTextFileA("/a"), "");
}

TEST_F(FreshRoot, RootMayBeReadWhileAnotherThreadSetsIt)
{
    std::thread writer([this] {
        for (int i = 0; i < 2000; ++i)
            deviceSetRoot(onMachine(i % 2 ? "" : "/other").c_str());
    });
    for (int i = 0; i < 2000; ++i) {
        const chString path = devicePath("/x");
        ASSERT_TRUE(path == onMachine("/x").c_str() || path == onMachine("/other/x").c_str());
    }
    writer.join();
}

} // namespace
