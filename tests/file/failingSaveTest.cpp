#include "support/file/atomicSave.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "tests/file/failingCalls.h"
#include "tests/file/freshRoot.h"

namespace {

using Names = std::vector<std::string>;

class FailingSave : public FreshRoot
{
protected:
    FailingSave()
    {
        fileSetReportSink([](const char* text) { s_report = text; });
        s_report.clear();
    }
    ~FailingSave() override { fileSetReportSink(nullptr); }

    static std::string s_report;
};

std::string FailingSave::s_report;

const char NEW_TEXT[] = "the new content";
const size_t NEW_SIZE = sizeof(NEW_TEXT) - 1;

// Whichever call fails: the answer tells what the file holds, and nothing stays beside it.
TEST_F(FailingSave, EachCallThatFailsLeavesTheOldFileOrTheNewOne)
{
    for (const int error : {EIO, ENOSPC, EACCES, EINTR}) {
        int calls = 0;
        for (int number = 0;; ++number) {
            put("/a", "old");
            FailingCalls failing;
            failing.failAt(number, error);
            const int saved = fileSaveAtomic("/a", NEW_TEXT, NEW_SIZE);
            if (!failing.failed())
                break;
            ++calls;
            EXPECT_EQ(get("/a"), saved ? NEW_TEXT : "old") << "call " << number << " error " << error;
            EXPECT_EQ(namesIn("/"), Names{"a"}) << "call " << number << " error " << error;
        }
        EXPECT_GE(calls, 12);
    }
}

TEST_F(FailingSave, EachCallThatFailsMakesNoPartOfANewFile)
{
    for (int number = 0;; ++number) {
        FailingCalls failing;
        failing.failAt(number, EIO);
        const int saved = fileSaveAtomic("/a", NEW_TEXT, NEW_SIZE);
        if (!failing.failed())
            break;
        EXPECT_EQ(get("/a"), saved ? NEW_TEXT : "") << "call " << number;
        EXPECT_EQ(namesIn("/"), saved ? Names{"a"} : Names{}) << "call " << number;
        unlink(onMachine("/a").c_str());
    }
}

// Fails one kind of call and nothing else.
class FailingKind : public FailingSave
{
protected:
    int saveWith(void (*breakIt)(fileSystemCalls&))
    {
        put("/a", "old");
        breakIt(fileGetSystemCalls());
        const int saved = fileSaveAtomic("/a", NEW_TEXT, NEW_SIZE);
        fileGetSystemCalls() = fileDefaultSystemCalls();
        return saved;
    }
    void expectOldFileAlone() const
    {
        EXPECT_EQ(get("/a"), "old");
        EXPECT_EQ(namesIn("/"), Names{"a"});
    }
};

TEST_F(FailingKind, FailedFlushIsAFailedSave)
{
    EXPECT_EQ(saveWith([](fileSystemCalls& calls) {
                  calls.fsync = [](int) {
                      errno = EIO;
                      return -1;
                  };
              }),
              0);
    expectOldFileAlone();
}

TEST_F(FailingKind, FailedRenameIsAFailedSave)
{
    EXPECT_EQ(saveWith([](fileSystemCalls& calls) {
                  calls.rename = [](const char*, const char*) {
                      errno = EROFS;
                      return -1;
                  };
              }),
              0);
    expectOldFileAlone();
}

// Anybody but the superuser makes another's file his own.
TEST_F(FailingKind, FileThatCannotBeGivenAwayIsSavedAllTheSame)
{
    put("/a", "old");
    if (chown(onMachine("/a").c_str(), 1234, gid_t(-1)) != 0)
        GTEST_SKIP() << "only the superuser can make a file another's";
    EXPECT_EQ(saveWith([](fileSystemCalls& calls) {
                  calls.fchown = [](int, uid_t, gid_t) {
                      errno = EPERM;
                      return -1;
                  };
              }),
              1);
    EXPECT_EQ(get("/a"), NEW_TEXT);
}

TEST_F(FailingKind, FailedCloseIsAFailedSave)
{
    EXPECT_EQ(saveWith([](fileSystemCalls& calls) {
                  calls.close = [](int fd) {
                      fileDefaultSystemCalls().close(fd);
                      errno = EDQUOT;
                      return -1;
                  };
              }),
              0);
    expectOldFileAlone();
}

TEST_F(FailingKind, FailedFlushOfTheFolderIsReportedAndTheNewFileIsInForce)
{
    EXPECT_EQ(saveWith([](fileSystemCalls& calls) {
                  calls.fsync = [](int fd) {
                      struct stat info;
                      if (fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
                          errno = EIO;
                          return -1;
                      }
                      return fsync(fd);
                  };
              }),
              1);
    EXPECT_EQ(get("/a"), NEW_TEXT);
    EXPECT_NE(s_report.find("could not be flushed"), std::string::npos);
}

TEST_F(FailingKind, DiskThatTakesNothingAtAllEndsTheSave)
{
    EXPECT_EQ(saveWith([](fileSystemCalls& calls) {
                  calls.write = [](int, const void*, size_t) { return ssize_t(0); };
              }),
              0);
    expectOldFileAlone();
}

TEST_F(FailingKind, WriteThatASignalInterruptsIsDoneAgain)
{
    static int interruptions;
    interruptions = 3;
    EXPECT_EQ(saveWith([](fileSystemCalls& calls) {
                  calls.write = [](int fd, const void* data, size_t size) {
                      if (interruptions-- <= 0)
                          return write(fd, data, size);
                      errno = EINTR;
                      return ssize_t(-1);
                  };
              }),
              1);
    EXPECT_EQ(get("/a"), NEW_TEXT);
}

TEST_F(FailingSave, ShortWritesAreContinued)
{
    FailingCalls failing;
    failing.setMostBytes(4);
    EXPECT_EQ(fileSaveAtomic("/a", NEW_TEXT, NEW_SIZE), 1);
    EXPECT_EQ(get("/a"), NEW_TEXT);
}

TEST_F(FailingSave, DiskThatFillsUpAtAnyByteKeepsTheOldFile)
{
    put("/a", "old");
    for (size_t space = 0; space < NEW_SIZE; ++space) {
        FailingCalls failing;
        failing.setMostBytes(4);
        failing.setSpace(space);
        EXPECT_EQ(fileSaveAtomic("/a", NEW_TEXT, NEW_SIZE), 0) << space;
        EXPECT_EQ(get("/a"), "old") << space;
        EXPECT_EQ(namesIn("/"), Names{"a"}) << space;
    }
}

TEST_F(FailingSave, CopyToAFullDiskLeavesTheTarget)
{
    put("/from", NEW_TEXT);
    put("/to", "old");
    FailingCalls failing;
    failing.setSpace(5);
    EXPECT_EQ(fileCopy("/from", "/to"), 0);
    EXPECT_EQ(get("/to"), "old");
    EXPECT_EQ(namesIn("/"), (Names{"from", "to"}));
}

TEST_F(FailingSave, DiskWithoutHardLinksKeepsAFileAsideByCopy)
{
    put("/a", "broken");
    FailingCalls failing;
    failing.failAt(0, EPERM);
    EXPECT_EQ(fileKeepAside("/a"), 1);
    EXPECT_TRUE(failing.failed());
    EXPECT_EQ(get("/a.bad"), "broken");
    EXPECT_EQ(namesIn("/"), Names{"a.bad"});
}

TEST_F(FailingSave, FileThatCannotBeMovedAwayStaysAlone)
{
    put("/a", "broken");
    for (const int number : {0, 1}) {
        FailingCalls failing;
        failing.failAt(number, EROFS);
        EXPECT_EQ(fileKeepAside("/a"), 0);
        EXPECT_EQ(namesIn("/"), Names{"a"});
    }
}

} // namespace
