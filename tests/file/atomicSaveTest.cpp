#include "support/file/atomicSave.h"
#include "support/file/chAtomicFile.h"
#include "support/file/fileSystemCalls.h"
#include "tests/file/freshRoot.h"

#include <fcntl.h>
#include <sys/file.h>
#include <thread>

namespace {

using Names = std::vector<std::string>;

class AtomicSave : public FreshRoot
{
protected:
    int save(const std::string& path, const std::string& content) const
    {
        return fileSaveAtomic(path.c_str(), content.data(), content.size());
    }
    mode_t modeOf(const std::string& path) const
    {
        struct stat info;
        EXPECT_EQ(stat(onMachine(path).c_str(), &info), 0);
        return info.st_mode & 07777;
    }
};

TEST_F(AtomicSave, NewFileIsMadeWholeAndNothingElse)
{
    EXPECT_EQ(save("/a.xml", std::string("one\0two", 7)), 1);
    EXPECT_EQ(get("/a.xml"), std::string("one\0two", 7));
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
}

TEST_F(AtomicSave, OldFileIsReplacedNotWrittenOver)
{
    put("/a.xml", "a long old content");
    std::ifstream reader(onMachine("/a.xml"));
    EXPECT_EQ(save("/a.xml", "new"), 1);
    EXPECT_EQ(get("/a.xml"), "new");
    std::string seen;
    std::getline(reader, seen);
    EXPECT_EQ(seen, "a long old content");
}

TEST_F(AtomicSave, EmptyContentMakesAnEmptyFile)
{
    put("/a", "x");
    EXPECT_EQ(save("/a", ""), 1);
    EXPECT_EQ(get("/a"), "");
    EXPECT_TRUE(isThere("/a"));
}

TEST_F(AtomicSave, ModeOfTheFileStays)
{
    put("/a", "x");
    ASSERT_EQ(chmod(onMachine("/a").c_str(), 0640), 0);
    EXPECT_EQ(save("/a", "y"), 1);
    EXPECT_EQ(modeOf("/a"), 0640u);
}

TEST_F(AtomicSave, ModeThatIsAskedForTakesThePlaceOfTheOldOne)
{
    put("/a", "x");
    ASSERT_EQ(chmod(onMachine("/a").c_str(), 0644), 0);
    chAtomicFile file;
    ASSERT_EQ(file.Open("/a", 0600), 1);
    EXPECT_EQ(file.Write("y", 1), 1);
    EXPECT_EQ(file.Commit(0), 1);
    EXPECT_EQ(modeOf("/a"), 0600u);
}

TEST_F(AtomicSave, OwnerOfTheFileStaysForTheSuperuser)
{
    put("/a", "x");
    const bool superuser = geteuid() == 0;
    const uid_t owner = superuser ? 1234 : geteuid();
    ASSERT_EQ(chown(onMachine("/a").c_str(), owner, gid_t(-1)), 0);
    EXPECT_EQ(save("/a", "y"), 1);
    struct stat info;
    ASSERT_EQ(stat(onMachine("/a").c_str(), &info), 0);
    EXPECT_EQ(info.st_uid, owner);
}

TEST_F(AtomicSave, NewFileGetsTheModeOfTheProcess)
{
    const mode_t before = umask(027);
    EXPECT_EQ(save("/a", "y"), 1);
    umask(before);
    EXPECT_EQ(modeOf("/a"), 0640u);
}

TEST_F(AtomicSave, LinkToAFileIsSavedThrough)
{
    makeFolder("/etc");
    makeFolder("/data");
    put("/data/cal", "old");
    ASSERT_EQ(symlink("/data/cal", onMachine("/etc/cal").c_str()), 0);
    EXPECT_EQ(save("/etc/cal", "new"), 1);
    EXPECT_EQ(get("/data/cal"), "new");
    struct stat info;
    ASSERT_EQ(lstat(onMachine("/etc/cal").c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    EXPECT_EQ(namesIn("/etc"), Names{"cal"});
    EXPECT_EQ(namesIn("/data"), Names{"cal"});
}

TEST_F(AtomicSave, LinkToNothingMakesTheFileItNames)
{
    ASSERT_EQ(symlink("b", onMachine("/a").c_str()), 0);
    EXPECT_EQ(save("/a", "new"), 1);
    EXPECT_EQ(get("/b"), "new");
}

TEST_F(AtomicSave, ReadOnlyFileIsRefused)
{
    put("/a", "old");
    ASSERT_EQ(chmod(onMachine("/a").c_str(), 0444), 0);
    EXPECT_EQ(save("/a", "new"), 0);
    EXPECT_EQ(get("/a"), "old");
    EXPECT_EQ(namesIn("/"), Names{"a"});
}

TEST_F(AtomicSave, MissingFolderIsRefused)
{
    EXPECT_EQ(save("/none/a", "new"), 0);
    EXPECT_EQ(namesIn("/"), Names{});
}

TEST_F(AtomicSave, FoldersAndDevicesAreRefused)
{
    makeFolder("/a");
    EXPECT_EQ(save("/a", "new"), 0);
    EXPECT_EQ(save("/a/", "new"), 0);
    EXPECT_EQ(save("/", "new"), 0);
    EXPECT_EQ(save("", "new"), 0);
    ASSERT_EQ(mkfifo(onMachine("/pipe").c_str(), 0600), 0);
    EXPECT_EQ(save("/pipe", "new"), 0);
    EXPECT_EQ(namesIn("/"), (Names{"a", "pipe"}));
    EXPECT_EQ(fileSaveAtomic(nullptr, "x", 1), 0);
}

TEST_F(AtomicSave, LongestFileNameCanBeSaved)
{
    const std::string name = "/" + std::string(255, 'n');
    EXPECT_EQ(save(name, "new"), 1);
    EXPECT_EQ(save(name, "newer"), 1);
    EXPECT_EQ(get(name), "newer");
}

TEST_F(AtomicSave, WhatAKilledProcessLeftIsRemovedByTheNextSave)
{
    put("/.a.save0", "half a fi");
    EXPECT_EQ(save("/a", "new"), 1);
    EXPECT_EQ(namesIn("/"), Names{"a"});
}

TEST_F(AtomicSave, TemporaryFileOfARunningSaveIsLeftAlone)
{
    chAtomicFile running;
    ASSERT_EQ(running.Open("/a"), 1);
    ASSERT_EQ(running.Write("first", 5), 1);
    EXPECT_EQ(save("/a", "second"), 1);
    EXPECT_EQ(get("/a"), "second");
    EXPECT_EQ(running.Commit(), 1);
    EXPECT_EQ(get("/a"), "first");
    EXPECT_EQ(namesIn("/"), Names{"a"});
}

// A rival finds the file between its making and its lock, takes it for what a killed process left, and has
// his own in its place.
TEST_F(AtomicSave, AFileThatARivalTookAwayInBetweenIsNotWrittenTo)
{
    static std::string made;
    made = onMachine("/.a.save0");
    fileGetSystemCalls().flock = [](int fd, int operation) {
        fileGetSystemCalls() = fileDefaultSystemCalls();
        unlink(made.c_str());
        close(open(made.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        return flock(fd, operation);
    };
    chAtomicFile file;
    ASSERT_EQ(file.Open("/a"), 1);
    EXPECT_EQ(namesIn("/"), (Names{".a.save0", ".a.save1"}));
    ASSERT_EQ(file.Write("mine", 4), 1);
    EXPECT_EQ(file.Commit(), 1);
    EXPECT_EQ(get("/a"), "mine");
    EXPECT_EQ(get("/.a.save0"), "");
}

TEST_F(AtomicSave, AbandonedFileLeavesTheOldOne)
{
    put("/a", "old");
    {
        chAtomicFile file;
        ASSERT_EQ(file.Open("/a"), 1);
        ASSERT_EQ(file.Write("new", 3), 1);
    }
    EXPECT_EQ(get("/a"), "old");
    EXPECT_EQ(namesIn("/"), Names{"a"});
}

TEST_F(AtomicSave, AnUnfinishedFileGrowsUnderItsName)
{
    put("/a.part", "of another day");
    chAtomicFile file;
    ASSERT_EQ(file.OpenUnfinished("/a.part"), 1);
    EXPECT_EQ(file.Write("ne", 2), 1);
    EXPECT_EQ(get("/a.part"), "ne");
    EXPECT_EQ(namesIn("/"), Names{"a.part"});
    EXPECT_EQ(file.Write("w", 1), 1);
    EXPECT_EQ(file.Commit(0), 1);
    file.Abandon();
    EXPECT_EQ(get("/a.part"), "new");
    EXPECT_EQ(namesIn("/"), Names{"a.part"});
}

TEST_F(AtomicSave, AnUnfinishedFileThatIsGivenUpIsGone)
{
    put("/a.part", "of another day");
    {
        chAtomicFile file;
        ASSERT_EQ(file.OpenUnfinished("/a.part"), 1);
        ASSERT_EQ(file.Write("new", 3), 1);
    }
    EXPECT_EQ(namesIn("/"), Names{});
}

TEST_F(AtomicSave, AnUnfinishedFileThatAnotherTookThePlaceOfLeavesThatOneAlone)
{
    chAtomicFile late, file;
    ASSERT_EQ(late.OpenUnfinished("/a.part"), 1);
    ASSERT_EQ(file.OpenUnfinished("/a.part"), 1);
    EXPECT_EQ(late.Write("late", 4), 1);
    EXPECT_EQ(file.Write("new", 3), 1);
    EXPECT_EQ(late.Commit(0), 0) << "what stands there is not what it has written";
    EXPECT_EQ(file.Commit(0), 1);
    EXPECT_EQ(get("/a.part"), "new");
    EXPECT_EQ(namesIn("/"), Names{"a.part"});
}

TEST_F(AtomicSave, AnUnfinishedFileTakesThePlaceOfALinkAndNotOfAFolder)
{
    put("/a", "old");
    ASSERT_EQ(symlink("a", onMachine("/a.part").c_str()), 0);
    chAtomicFile file;
    ASSERT_EQ(file.OpenUnfinished("/a.part"), 1);
    EXPECT_EQ(file.Write("new", 3), 1);
    EXPECT_EQ(file.Commit(), 1);
    EXPECT_EQ(get("/a"), "old");
    EXPECT_EQ(get("/a.part"), "new");
    makeFolder("/b.part");
    EXPECT_EQ(file.OpenUnfinished("/b.part"), 0);
    EXPECT_EQ(file.OpenUnfinished("/none/b.part"), 0);
    EXPECT_EQ(namesIn("/"), (Names{"a", "a.part", "b.part"}));
}

TEST_F(AtomicSave, AnUnfinishedFileOfASaveBeforeDoesNotMakeTheNextOneUnfinished)
{
    chAtomicFile file;
    ASSERT_EQ(file.OpenUnfinished("/a"), 1);
    EXPECT_EQ(file.Write("old", 3), 1);
    EXPECT_EQ(file.Commit(0), 1);
    ASSERT_EQ(file.Open("/a"), 1);
    EXPECT_EQ(file.Write("new", 3), 1);
    EXPECT_EQ(get("/a"), "old");
    file.Abandon();
    EXPECT_EQ(get("/a"), "old");
}

TEST_F(AtomicSave, FileThatIsNotOpenTakesNothing)
{
    chAtomicFile file;
    EXPECT_EQ(file.Write("x", 1), 0);
    EXPECT_EQ(file.Commit(), 0);
}

TEST_F(AtomicSave, ManyWritersLeaveOneOfTheirFilesWhole)
{
    std::vector<std::thread> writers;
    std::vector<int> saved(6);
    for (size_t i = 0; i < saved.size(); ++i)
        writers.emplace_back([this, i, &saved] {
            for (int round = 0; round < 20; ++round)
                saved[i] += save("/a", std::string(5000 + 100 * i, char('a' + i)));
        });
    for (std::thread& writer : writers)
        writer.join();
    for (const int count : saved)
        EXPECT_EQ(count, 20);
    const std::string content = get("/a");
    ASSERT_FALSE(content.empty());
    EXPECT_EQ(content, std::string(5000 + 100 * size_t(content[0] - 'a'), content[0]));
    EXPECT_EQ(namesIn("/"), Names{"a"});
}

} // namespace
