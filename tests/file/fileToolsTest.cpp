#include "support/file/fileTools.h"
#include "tests/file/freshRoot.h"

namespace {

using Names = std::vector<std::string>;

TEST_F(FreshRoot, TextFileIsReadAsItStands)
{
    put("/a", "one\r\ntwo\n");
    EXPECT_EQ(nuxDumpTextFileA("/a"), "one\r\ntwo\n");
    put("/zero", "0");
    EXPECT_EQ(nuxDumpTextFileA("/zero"), "0");
    EXPECT_EQ(nuxDumpTextFileA("/none"), "");
    EXPECT_EQ(nuxDumpTextFileA(nullptr), "");
}

TEST_F(FreshRoot, FileBeyondTheLimitIsNotRead)
{
    put("/a", "12345");
    std::string data = "before";
    EXPECT_EQ(fileReadWhole("/a", data, 5), 1);
    EXPECT_EQ(data, "12345");
    EXPECT_EQ(fileReadWhole("/a", data, 4), 0);
    EXPECT_EQ(data, "");
}

TEST(FileTools, DeviceWithoutAnEndIsReadUpToTheLimitOnly)
{
    deviceSetRoot(nullptr);
    std::string data;
    EXPECT_EQ(fileReadWhole("/dev/zero", data, 1000000), 0);
    EXPECT_EQ(data, "");
}

TEST_F(FreshRoot, FoldersAndPipesAreNotRead)
{
    makeFolder("/d");
    ASSERT_EQ(mkfifo(onMachine("/pipe").c_str(), 0600), 0);
    std::string data;
    EXPECT_EQ(fileReadWhole("/d", data), 0);
    EXPECT_EQ(fileReadWhole("/pipe", data), 0);
}

TEST(FileTools, KernelFilesThatTellNoSizeAreRead)
{
    deviceSetRoot(nullptr);
    EXPECT_EQ(fileSize("/proc/self/stat"), 0);
    EXPECT_FALSE(nuxDumpTextFileA("/proc/self/stat").IsEmpty());
}

TEST_F(FreshRoot, CopyIsWholeAndKeepsItsSource)
{
    put("/a", std::string(200000, 'x'));
    put("/b", "old");
    EXPECT_EQ(fileCopy("/a", "/b"), 1);
    EXPECT_EQ(get("/b"), std::string(200000, 'x'));
    EXPECT_EQ(fileCopy("/a", "/a"), 1);
    EXPECT_EQ(get("/a").size(), 200000u);
}

TEST_F(FreshRoot, CopyOfWhatIsNotThereLeavesTheTarget)
{
    put("/b", "old");
    EXPECT_EQ(fileCopy("/none", "/b"), 0);
    EXPECT_EQ(get("/b"), "old");
    EXPECT_EQ(fileCopy("/none", "/c"), 0);
    EXPECT_EQ(namesIn("/"), Names{"b"});
}

TEST_F(FreshRoot, RenameTakesThePlaceOfAFile)
{
    put("/a.new", "new");
    put("/a", "old");
    EXPECT_EQ(fileRename("/a.new", "/a"), 1);
    EXPECT_EQ(get("/a"), "new");
    EXPECT_EQ(namesIn("/"), Names{"a"});
    EXPECT_EQ(fileRename("/none", "/a"), 0);
}

TEST_F(FreshRoot, RenameTellsFoldersOfOneLengthApart)
{
    makeFolder("/one");
    makeFolder("/two");
    put("/one/a", "x");
    EXPECT_EQ(fileRename("/one/a", "/two/a"), 1);
    EXPECT_EQ(namesIn("/one"), Names{});
    EXPECT_EQ(get("/two/a"), "x");
    EXPECT_EQ(fileRename("/two/a", "/two/b"), 1);
    EXPECT_EQ(namesIn("/two"), Names{"b"});
    for (const char* noName : {"/two/", "/two/.", "/two/.."})
        EXPECT_EQ(fileRename("/two/b", noName), 0) << noName;
    EXPECT_EQ(get("/two/b"), "x");
}

TEST_F(FreshRoot, RemoveTakesTheLinkNotItsFile)
{
    put("/a", "x");
    ASSERT_EQ(symlink("/a", onMachine("/l").c_str()), 0);
    EXPECT_EQ(fileRemove("/l"), 1);
    EXPECT_EQ(namesIn("/"), Names{"a"});
    EXPECT_EQ(fileRemove("/a"), 1);
    EXPECT_EQ(fileRemove("/a"), 0);
    makeFolder("/d");
    EXPECT_EQ(fileRemove("/d"), 0);
}

TEST_F(FreshRoot, StatTellsAReplacedFileOfTheSameSize)
{
    tagFileStat before, after;
    EXPECT_EQ(fileStat("/a", before), 0);
    EXPECT_EQ(fileSize("/a"), -1);
    put("/a", "123");
    put("/b", "456");
    EXPECT_EQ(fileStat("/a", before), 1);
    EXPECT_EQ(fileSize("/a"), 3);
    EXPECT_GT(before.nModifiedNs, 1500000000LL * 1000000000LL);
    EXPECT_EQ(fileStat("/a", after), 1);
    EXPECT_TRUE(before == after);
    ASSERT_EQ(fileRename("/b", "/a"), 1);
    EXPECT_EQ(fileStat("/a", after), 1);
    EXPECT_TRUE(before != after);
}

} // namespace
