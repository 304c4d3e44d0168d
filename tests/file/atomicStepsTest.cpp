// A save in single steps: what each puts on the disk, and what it leaves to the others.
#include "support/file/chAtomicFile.h"
#include "tests/file/failingCalls.h"
#include "tests/file/freshRoot.h"

#include <cstring>

namespace {

// Counts what is flushed; either kind can be made to fail.
class AtomicSteps : public FreshRoot
{
protected:
    AtomicSteps()
    {
        s_files = s_folders = 0;
        s_fileFails = s_folderFails = false;
        fileGetSystemCalls().fsync = [](int fd) {
            struct stat info;
            const bool isFolder = fstat(fd, &info) == 0 && S_ISDIR(info.st_mode);
            ++(isFolder ? s_folders : s_files);
            errno = EIO;
            return (isFolder ? s_folderFails : s_fileFails) ? -1 : 0;
        };
        put("/a", "old");
    }
    ~AtomicSteps() override { fileGetSystemCalls() = fileDefaultSystemCalls(); }

    int openAndWrite(const char* text) { return file.Open("/a") && file.Write(text, strlen(text)); }

    static int s_files, s_folders; // flushed so far
    static bool s_fileFails, s_folderFails;
    chAtomicFile file;
};

int AtomicSteps::s_files;
int AtomicSteps::s_folders;
bool AtomicSteps::s_fileFails;
bool AtomicSteps::s_folderFails;

TEST_F(AtomicSteps, FlushPutsTheContentOnTheDiskAndLeavesTheOldFileInForce)
{
    ASSERT_TRUE(openAndWrite("new"));
    EXPECT_EQ(file.Flush(), 1);
    EXPECT_EQ(s_files, 1);
    EXPECT_EQ(s_folders, 0);
    EXPECT_EQ(get("/a"), "old");
}

TEST_F(AtomicSteps, FlushThatFailsIsToldAndTheFileCanBeGivenUp)
{
    ASSERT_TRUE(openAndWrite("new"));
    s_fileFails = true;
    EXPECT_EQ(file.Flush(), 0);
    file.Abandon();
    EXPECT_EQ(get("/a"), "old");
    EXPECT_EQ(namesIn("/"), std::vector<std::string>{"a"});
}

TEST_F(AtomicSteps, WithoutAnOpenFileThereIsNothingToFlush)
{
    EXPECT_EQ(file.Flush(), 0);
    EXPECT_EQ(s_files, 0);
}

TEST_F(AtomicSteps, CommitWithoutAFlushPutsTheFileInItsPlaceAlone)
{
    ASSERT_TRUE(openAndWrite("new"));
    EXPECT_EQ(file.Commit(0), 1);
    EXPECT_EQ(get("/a"), "new");
    EXPECT_EQ(s_files + s_folders, 0);
}

TEST_F(AtomicSteps, CommitFlushesTheFileAndItsFolder)
{
    ASSERT_TRUE(openAndWrite("new"));
    EXPECT_EQ(file.Commit(), 1);
    EXPECT_EQ(s_files, 1);
    EXPECT_EQ(s_folders, 1);
}

TEST_F(AtomicSteps, TheFolderIsFlushedAfterTheCommit)
{
    ASSERT_TRUE(openAndWrite("new"));
    ASSERT_TRUE(file.Commit(0));
    EXPECT_EQ(file.FlushFolder(), 1);
    EXPECT_EQ(s_files, 0);
    EXPECT_EQ(s_folders, 1);
}

TEST_F(AtomicSteps, FlushOfTheFolderThatFailsIsTold)
{
    ASSERT_TRUE(openAndWrite("new"));
    ASSERT_TRUE(file.Commit(0));
    s_folderFails = true;
    EXPECT_EQ(file.FlushFolder(), 0);
    EXPECT_EQ(get("/a"), "new");
}

TEST_F(AtomicSteps, FolderThatCannotBeOpenedIsNotFlushed)
{
    ASSERT_TRUE(openAndWrite("new"));
    ASSERT_TRUE(file.Commit(0));
    FailingCalls failing;
    failing.failAt(0, EACCES);
    EXPECT_EQ(file.FlushFolder(), 0);
    EXPECT_TRUE(failing.failed());
}

} // namespace
