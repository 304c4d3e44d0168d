#include "support/file/chFileStdio.h"
#include "tests/file/freshRoot.h"

namespace {

// The copying loop of the media import: the end is asked for at its top.
bool copyByBlocks(chFileStdio& from, chFileStdio& to)
{
    char block[4096];
    while (!from.IsEOF()) {
        const int count = from.Read(block, sizeof(block));
        if (count <= 0 || to.Write(block, count) != count)
            return false;
    }
    return true;
}

TEST_F(FreshRoot, FilesOfEverySizeAreCopiedUpToTheirEnd)
{
    for (const size_t size : {0u, 1u, 4095u, 4096u, 4097u, 8192u, 100000u}) {
        put("/from", std::string(size, 'x'));
        chFileStdio from("/from", "rb"), to("/to", "wb");
        EXPECT_TRUE(copyByBlocks(from, to)) << size;
        EXPECT_EQ(to.Close(), 1);
        EXPECT_EQ(get("/to").size(), size);
    }
}

TEST_F(FreshRoot, FileThatCannotBeOpenedIsNotAtItsEnd)
{
    chFileStdio file;
    EXPECT_EQ(file.Open("/none", "rb"), 0);
    EXPECT_EQ(file.IsOpen(), 0);
    EXPECT_EQ(file.IsEOF(), 0);
    char byte;
    EXPECT_EQ(file.Read(&byte, 1), 0);
    EXPECT_EQ(file.Write(&byte, 1), 0);
    EXPECT_EQ(file.Tell(), -1);
    EXPECT_EQ(file.Seek(0), 0);
    EXPECT_EQ(file.Close(), 1);
}

TEST_F(FreshRoot, FolderIsNoFile)
{
    makeFolder("/d");
    chFileStdio file;
    EXPECT_EQ(file.Open("/d", "rb"), 0);
    EXPECT_EQ(file.Open(nullptr, "rb"), 0);
    EXPECT_EQ(file.Open("/d/a", nullptr), 0);
}

TEST_F(FreshRoot, WriteToAFullDiskIsToldAtTheLatestByClose)
{
    makeFolder("/dev");
    ASSERT_EQ(symlink("/dev/full", onMachine("/full").c_str()), 0);
    deviceSetRoot(nullptr);
    chFileStdio file;
    ASSERT_EQ(file.Open("/dev/full", "wb"), 1);
    EXPECT_EQ(file.Write("abc", 3), 3);
    EXPECT_EQ(file.Close(), 0);
    ASSERT_EQ(file.Open("/dev/full", "wb"), 1);
    const std::string large(1 << 20, 'x');
    EXPECT_LT(file.Write(large.data(), int(large.size())), int(large.size()));
    EXPECT_EQ(file.Close(), 0);
}

TEST_F(FreshRoot, ReadingAndWritingOneFileTakeTurns)
{
    put("/a", "0123456789");
    chFileStdio file("/a", "r+b");
    char bytes[3] = {};
    EXPECT_EQ(file.Read(bytes, 2), 2);
    EXPECT_EQ(file.Write("xx", 2), 2);
    EXPECT_EQ(file.Read(bytes, 2), 2);
    EXPECT_STREQ(bytes, "45");
    EXPECT_EQ(file.Seek(-1, SEEK_END), 1);
    EXPECT_EQ(file.Tell(), 9);
    EXPECT_EQ(file.IsEOF(), 0);
    EXPECT_EQ(file.Read(bytes, 2), 1);
    EXPECT_EQ(file.IsEOF(), 1);
    EXPECT_EQ(file.Flush(), 1);
    EXPECT_EQ(file.Close(), 1);
    EXPECT_EQ(get("/a"), "01xx456789");
}

TEST_F(FreshRoot, AskingAWriterForItsEndLosesNothing)
{
    chFileStdio file("/a", "wb");
    EXPECT_EQ(file.Write("ab", 2), 2);
    EXPECT_EQ(file.IsEOF(), 0);
    EXPECT_EQ(file.Write("cd", 2), 2);
    EXPECT_EQ(file.Close(), 1);
    EXPECT_EQ(get("/a"), "abcd");
}

TEST_F(FreshRoot, OpeningAgainClosesTheFirstFile)
{
    chFileStdio file("/a", "wb");
    EXPECT_EQ(file.Write("ab", 2), 2);
    EXPECT_EQ(file.Open("/b", "wb"), 1);
    EXPECT_EQ(get("/a"), "ab");
}

} // namespace
