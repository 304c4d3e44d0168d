// A folder in which strangers may put things: nothing of theirs is followed, read or written.
#include "support/file/sharedFolder.h"
#include "support/file/atomicSave.h"
#include "support/file/chAtomicFile.h"
#include "support/file/chFileStdio.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "tests/file/freshRoot.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

using Names = std::vector<std::string>;

const uid_t STRANGER = 65534;

class SharedFolder : public FreshRoot
{
protected:
    SharedFolder()
    {
        makeFolder("/tmp");
        makeFolder("/data");
        put("/data/secret", "secret");
        EXPECT_EQ(chmod(onMachine("/tmp").c_str(), 01777), 0);
    }
    // Only the superuser can play a stranger.
    bool giveAway(const std::string& path) const
    {
        return lchown(onMachine(path).c_str(), STRANGER, STRANGER) == 0;
    }
    void plantLink(const char* target) const { ASSERT_EQ(symlink(target, onMachine("/tmp/a").c_str()), 0); }
    void expectRefused(const char* path) const
    {
        std::string data;
        EXPECT_EQ(fileRead(path, data), FILE_READ_FAILED);
        EXPECT_EQ(nuxDumpTextFileA(path), "");
        for (const char* mode : {"rb", "r+b", "wt", "w+b", "ab", "a+b"})
            EXPECT_FALSE(chFileStdio(path, mode).IsOpen()) << mode;
        EXPECT_EQ(fileCopy(path, "/data/copy"), 0);
        EXPECT_FALSE(isThere("/data/copy"));
    }
};

TEST_F(SharedFolder, OwnFilesAreWrittenAndReadAsAnywhere)
{
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "one", 3), 1);
    EXPECT_EQ(nuxDumpTextFileA("/tmp/a"), "one");
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "two", 3), 1);
    EXPECT_EQ(get("/tmp/a"), "two");
    {
        chFileStdio file("/tmp/a", "wt");
        EXPECT_EQ(file.Write("three", 5), 5);
    }
    EXPECT_EQ(get("/tmp/a"), "three");
    EXPECT_EQ(namesIn("/tmp"), Names{"a"});
}

TEST_F(SharedFolder, LinkIsNotFollowedWhereverItLeads)
{
    for (const char* target : {"/data/secret", "../data/secret"}) {
        plantLink(target);
        expectRefused("/tmp/a");
        EXPECT_EQ(get("/data/secret"), "secret") << target;
        ASSERT_EQ(fileRemove("/tmp/a"), 1);
    }
    plantLink("/data/new");
    chFileStdio file("/tmp/a", "wt");
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(isThere("/data/new"));
}

TEST_F(SharedFolder, SaveTakesThePlaceOfALink)
{
    plantLink("/data/secret");
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "answer", 6), 1);
    EXPECT_EQ(get("/data/secret"), "secret");
    struct stat info;
    ASSERT_EQ(lstat(onMachine("/tmp/a").c_str(), &info), 0);
    EXPECT_TRUE(S_ISREG(info.st_mode));
    EXPECT_EQ(get("/tmp/a"), "answer");
    EXPECT_EQ(namesIn("/tmp"), Names{"a"});
}

TEST_F(SharedFolder, FileThatWasALinkWhenItWasNotLookedAtIsNotFollowedEither)
{
    // As a rival does it: the link comes after the path was resolved.
    plantLink(onMachine("/data/secret").c_str());
    const std::string path = onMachine("/tmp/a");
    EXPECT_LT(fileOpenSafely(path.c_str(), O_RDONLY, 0), 0);
    EXPECT_LT(fileOpenSafely(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 0);
    EXPECT_EQ(get("/data/secret"), "secret");
}

TEST_F(SharedFolder, FolderThatIsALinkIsNoWayIn)
{
    plantLink("/data");
    expectRefused("/tmp/a/secret");
    EXPECT_EQ(fileSaveAtomic("/tmp/a/secret", "x", 1), 0);
    EXPECT_EQ(get("/data/secret"), "secret");
}

TEST_F(SharedFolder, PipeHoldsUpNobody)
{
    ASSERT_EQ(mkfifo(onMachine("/tmp/a").c_str(), 0666), 0);
    expectRefused("/tmp/a");
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "answer", 6), 1);
    EXPECT_EQ(get("/tmp/a"), "answer");
}

TEST_F(SharedFolder, SecondNameOfAnotherFileIsNeitherReadNorWritten)
{
    ASSERT_EQ(link(onMachine("/data/secret").c_str(), onMachine("/tmp/a").c_str()), 0);
    expectRefused("/tmp/a");
    EXPECT_EQ(get("/data/secret"), "secret");
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "answer", 6), 1);
    EXPECT_EQ(get("/data/secret"), "secret");
}

TEST_F(SharedFolder, SecondNameOfAnotherFileGivesNothingToTheNextOne)
{
    ASSERT_EQ(chmod(onMachine("/data/secret").c_str(), 0755), 0);
    ASSERT_EQ(link(onMachine("/data/secret").c_str(), onMachine("/tmp/a").c_str()), 0);
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "answer", 6), 1);
    struct stat info;
    ASSERT_EQ(lstat(onMachine("/tmp/a").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0111, 0u);
}

TEST_F(SharedFolder, FolderInTheFilesPlaceIsRefusedBeforeAnythingIsWritten)
{
    makeFolder("/tmp/a");
    chAtomicFile file;
    EXPECT_EQ(file.Open("/tmp/a"), 0);
    EXPECT_EQ(namesIn("/tmp"), Names{"a"});
}

TEST_F(SharedFolder, AnUnfinishedFileIsNotBegunUnderANameThatAnybodyCanTake)
{
    chAtomicFile file;
    ASSERT_EQ(file.OpenUnfinished("/tmp/a"), 1);
    EXPECT_FALSE(isThere("/tmp/a"));
    EXPECT_EQ(file.Write("new", 3), 1);
    EXPECT_EQ(file.Commit(0), 1);
    EXPECT_EQ(get("/tmp/a"), "new");
}

TEST_F(SharedFolder, OpenFilesStayWithTheProcess)
{
    put("/tmp/a", "a");
    for (const char* path : {"/tmp/a", "/data/secret"}) {
        const int fd = fileOpenSafely(onMachine(path).c_str(), O_RDONLY, 0);
        ASSERT_GE(fd, 0) << path;
        EXPECT_TRUE(fcntl(fd, F_GETFD) & FD_CLOEXEC) << path;
        close(fd);
    }
}

TEST_F(SharedFolder, StickyFolderThatOnlyItsOwnerWritesIsNotShared)
{
    makeFolder("/own");
    ASSERT_EQ(chmod(onMachine("/own").c_str(), 01755), 0);
    ASSERT_EQ(symlink("/data/secret", onMachine("/own/a").c_str()), 0);
    EXPECT_EQ(nuxDumpTextFileA("/own/a"), "secret");
}

TEST_F(SharedFolder, FileOfAStrangerIsNotReadAndGivesNothingToTheNextOne)
{
    put("/tmp/a", "a lie");
    ASSERT_EQ(chmod(onMachine("/tmp/a").c_str(), 0666), 0);
    if (!giveAway("/tmp/a"))
        GTEST_SKIP() << "only the superuser can play a stranger";
    expectRefused("/tmp/a");
    EXPECT_EQ(get("/tmp/a"), "a lie");
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "answer", 6), 1);
    struct stat info;
    ASSERT_EQ(lstat(onMachine("/tmp/a").c_str(), &info), 0);
    EXPECT_EQ(info.st_uid, geteuid());
    EXPECT_EQ(info.st_mode & S_IWOTH, 0u);
}

TEST_F(SharedFolder, FolderOfAStrangerIsNoPlaceForAFile)
{
    makeFolder("/tmp/d");
    put("/tmp/d/a", "a lie");
    EXPECT_EQ(nuxDumpTextFileA("/tmp/d/a"), "a lie");
    if (!giveAway("/tmp/d"))
        GTEST_SKIP() << "only the superuser can play a stranger";
    expectRefused("/tmp/d/a");
    EXPECT_EQ(fileSaveAtomic("/tmp/d/a", "x", 1), 0);
}

TEST_F(SharedFolder, NameOfATemporaryFileCannotBeTakenBeforehand)
{
    for (int slot = 0; slot < 100; ++slot)
        put("/tmp/.a.save" + std::to_string(slot), "");
    EXPECT_EQ(fileSaveAtomic("/tmp/a", "answer", 6), 1);
    EXPECT_EQ(get("/tmp/a"), "answer");
    EXPECT_EQ(namesIn("/tmp").size(), 101u);
}

TEST_F(SharedFolder, LinkIsNotKeptAside)
{
    plantLink("/data/secret");
    EXPECT_EQ(fileKeepAside("/tmp/a"), 0);
    EXPECT_EQ(namesIn("/tmp"), Names{"a"});
    EXPECT_EQ(get("/data/secret"), "secret");
}

TEST_F(SharedFolder, LinksOfOtherFoldersAreFollowedAsBefore)
{
    ASSERT_EQ(symlink("/data/secret", onMachine("/a").c_str()), 0);
    EXPECT_EQ(nuxDumpTextFileA("/a"), "secret");
    EXPECT_EQ(fileSaveAtomic("/a", "new", 3), 1);
    EXPECT_EQ(get("/data/secret"), "new");
}

} // namespace
