// What short resources, other users and stopped processes do to key files.
#include "host/services/keyfiles/deviceFiles.h"
#include "host/services/keyfiles/keyFileCache.h"
#include "host/services/keyfiles/keyFileLock.h"
#include "host/services/keyfiles/sharedGeneration.h"
#include "host/services/messages/messageBus.h"
#include "host/services/system/hostLog.h"
#include "support/file/deviceRoot.h"
#include "support/host/registry.h"
#include "tests/kit/fewDescriptors.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include <QDir>
#include <QFile>
#include <atomic>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

const char* const kFile = "/rundata/config/user/test.ini";
const char* const kFolder = "/rundata/config/user";
const char* const kLockFile = "/rundata/run/.registry.lock";
const char* const kNumber = "/rundata/run/registry.gen";
const uid_t kStranger = 65534;

class KeyFileSafety : public PhoneTest
{
protected:
    ~KeyFileSafety() override { kit::holdClocks(false); }
    QByteArray machine(const char* path) const { return hostPath(path).toUtf8(); }
    int modeOf(const char* path) const
    {
        struct stat info = {};
        return stat(machine(path), &info) == 0 ? int(info.st_mode & 0777) : -1;
    }
    QStringList kept() const { return QDir(hostPath(kFolder)).entryList({"*.bad*"}, QDir::Files); }
    static int traces(const char* text)
    {
        int count = 0;
        for (const tagLogEntry& entry : hostLogFrom(1))
            count += entry.strKind == "trace" && entry.strText.contains(text);
        return count;
    }
    static bool endedWell(pid_t child)
    {
        int status = 0;
        return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    static pid_t startChild(const std::function<bool()>& work)
    {
        const pid_t child = fork();
        if (child == 0)
            _exit(work() ? 0 : 1);
        return child;
    }
};

// A process that does something, says so, and then stands still until it is killed.
class Standstill
{
public:
    explicit Standstill(const std::function<bool()>& work)
    {
        int ready[2];
        if (pipe(ready) != 0)
            return;
        m_child = fork();
        if (m_child == 0) {
            const char answer = work() ? 1 : 0;
            if (write(ready[1], &answer, 1) != 1)
                _exit(1);
            for (;;)
                pause();
        }
        char answer = 0;
        close(ready[1]);
        m_bDone = read(ready[0], &answer, 1) == 1 && answer == 1;
        close(ready[0]);
    }
    ~Standstill()
    {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    bool isDone() const { return m_bDone; }

private:
    pid_t m_child = -1;
    bool m_bDone = false;
};

// Another writer, in a thread of his own, who wants the lock.
class OtherWriter
{
public:
    explicit OtherWriter(const std::string& folder)
        : m_thread([this, folder] {
              const keyFileLock lock(folder);
              m_bTaken = lock.IsTaken();
              m_bEnded = true;
          })
    {
    }
    ~OtherWriter()
    {
        kit::moveClocks(60000);
        m_thread.join();
    }
    bool hadIt() const { return m_bTaken; }
    bool hasEnded() const { return m_bEnded; }

private:
    std::atomic<bool> m_bTaken{false};
    std::atomic<bool> m_bEnded{false};
    std::thread m_thread;
};

class KeyFileLock : public KeyFileSafety
{
protected:
    // Clocks that stand still: whoever waits does so until the test moves them.
    KeyFileLock() : folder(hostPath("/rundata/run").toStdString())
    {
        QDir().mkpath(hostPath("/rundata/run"));
        kit::holdClocks(true);
    }
    // For as long as the processor is busy with it: the clocks stand still.
    static bool soon(const std::function<bool()>& condition)
    {
        for (const std::clock_t end = std::clock() + 3 * CLOCKS_PER_SEC; std::clock() < end;) {
            if (condition())
                return true;
            std::this_thread::yield();
        }
        return condition();
    }
    // Whose turn it is next holds the first byte.
    bool isWaitedFor() const
    {
        const int fd = open(machine(kLockFile), O_RDWR | O_CLOEXEC);
        struct flock place = {};
        place.l_type = F_WRLCK;
        place.l_whence = SEEK_SET;
        place.l_len = 1;
        const bool isKnown = fcntl(fd, F_OFD_GETLK, &place) == 0;
        close(fd);
        return isKnown && place.l_type != F_UNLCK;
    }

    const std::string folder;
};

QByteArray manyLines()
{
    QByteArray text = "; the phone's settings\n[A]\nk=1\n";
    for (int i = 0; i < 72; ++i)
        text += "key" + QByteArray::number(i) + "=" + QByteArray::number(i) + "\n";
    return text;
}

} // namespace

TEST_F(KeyFileSafety, WithoutDescriptorsTheSaveFailsAndNothingIsLost)
{
    const QByteArray text = manyLines();
    int saved = 0;
    int refused = 0;
    for (int left = 0; left < 8; ++left) {
        writeFile(kFile, text);
        int result;
        {
            const FewDescriptors few(left);
            result = nuxSetRegistryString(kFile, "A", "k", "2");
        }
        EXPECT_EQ(readFile(kFile), result ? QByteArray(text).replace("\nk=1", "\nk=2") : text) << left;
        EXPECT_EQ(kept(), QStringList()) << left;
        (result ? saved : refused) += 1;
    }
    EXPECT_GT(saved, 0);
    EXPECT_GT(refused, 1);
}

TEST_F(KeyFileSafety, AFileThatCannotBeReadForAWhileGivesItsLastKnownValues)
{
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 7), 1);
    QFile::remove(hostPath(kFile));
    writeFile(kFile, "[A]\nk=22\n");
    {
        const FewDescriptors few(0);
        EXPECT_TRUE(kit::waitUntil(
            [] { return nuxGetRegistryInt(kFile, "A", "k", 7) != 1 || traces("cannot be read") == 1; }));
        for (int look = 0; look < 5; ++look) {
            keyFileCache::GetInstance().LookAgain();
            EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 7), 1);
        }
    }
    EXPECT_TRUE(kit::waitUntil([] { return nuxGetRegistryInt(kFile, "A", "k", 7) == 22; }));
    EXPECT_EQ(traces("cannot be read"), 1);
}

TEST_F(KeyFileSafety, WhoeverLocksTheFolderHoldsUpNobody)
{
    writeFile(kFile, "[A]\nk=1\n");
    const Standstill stranger([this] {
        const int folder = open(machine(kFolder), O_RDONLY | O_DIRECTORY);
        return folder >= 0 && flock(folder, LOCK_EX) == 0;
    });
    ASSERT_TRUE(stranger.isDone());
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(readFile(kFile), "[A]\nk=2\n");
}

TEST_F(KeyFileSafety, AWriterThatStandsStillMakesTheSaveFailSoonAndIsTold)
{
    writeFile(kFile, "[A]\nk=1\n");
    {
        const Standstill writer([this] {
            static keyFileLock lock(hostPath("/rundata/run").toStdString());
            return lock.IsTaken();
        });
        ASSERT_TRUE(writer.isDone());
        EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
        EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
        EXPECT_EQ(traces("another writer does not let go of it"), 1);
        EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "1"), 1) << "what is there needs no save";
    }
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(readFile(kFile), "[A]\nk=2\n");
}

TEST_F(KeyFileLock, WhoeverWaitsIsNextThoughAnotherComesAgainAtOnce)
{
    for (int round = 0; round < 20; ++round) {
        auto held = std::make_unique<keyFileLock>(folder);
        ASSERT_TRUE(held->IsTaken());
        const OtherWriter other(folder);
        ASSERT_TRUE(soon([this] { return isWaitedFor(); }));
        held.reset();
        const keyFileLock again(folder);
        ASSERT_TRUE(again.IsTaken());
        ASSERT_TRUE(other.hadIt());
    }
}

TEST_F(KeyFileLock, IsWaitedForSomeFramesAndNoLonger)
{
    constexpr int kTwoFramesMs = 33;
    for (const bool isGivenBack : {true, false}) {
        auto held = std::make_unique<keyFileLock>(folder);
        const OtherWriter other(folder);
        ASSERT_TRUE(soon([this] { return isWaitedFor(); }));
        kit::moveClocks(kTwoFramesMs);
        for (int look = 0; look < 1000; ++look)
            ASSERT_TRUE(isWaitedFor());
        if (isGivenBack)
            held.reset();
        else
            kit::moveClocks(kTwoFramesMs);
        EXPECT_TRUE(soon([&] { return other.hasEnded(); }));
        EXPECT_EQ(other.hadIt(), isGivenBack);
    }
}

TEST_F(KeyFileSafety, TheLockIsForThePhonesUserAlone)
{
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(modeOf(kLockFile), 0600);
    ASSERT_EQ(chmod(machine(kLockFile), 0666), 0);
    ASSERT_EQ(nuxSetRegistryString(kFile, "A", "k", "3"), 1);
    EXPECT_EQ(modeOf(kLockFile), 0600);
}

TEST_F(KeyFileSafety, ALinkInTheLocksPlaceIsNotFollowed)
{
    writeFile(kFile, "[A]\nk=1\n");
    QFile::remove(hostPath(kLockFile));
    ASSERT_EQ(symlink(machine("/rundata/other"), machine(kLockFile)), 0);
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/other")));
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
}

TEST_F(KeyFileSafety, AStrangersFileInTheLocksPlaceIsNotUsed)
{
    writeFile(kFile, "[A]\nk=1\n");
    writeFile(kLockFile, "");
    if (chown(machine(kLockFile), kStranger, kStranger) != 0)
        GTEST_SKIP() << "only the superuser can play another user";
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
}

TEST_F(KeyFileSafety, TheSharedNumberIsForThePhonesUserAloneAndNoLink)
{
    const QByteArray root = this->root().toUtf8();
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(modeOf(kNumber), 0600);
    QFile::remove(hostPath(kNumber));
    ASSERT_EQ(symlink(machine("/rundata/other"), machine(kNumber)), 0);
    deviceSetRoot(root); // the number is looked for again
    ASSERT_EQ(nuxSetRegistryString(kFile, "A", "k", "3"), 1);
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 3);
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/other")));
}

TEST_F(KeyFileSafety, ADamagedFileIsToldOnce)
{
    writeFile(kFile, QByteArray("\0\1\2", 3));
    for (int look = 0; look < 5; ++look) {
        keyFileCache::GetInstance().LookAgain();
        EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 7), 7);
    }
    EXPECT_EQ(traces("cannot be understood"), 1);
}

TEST_F(KeyFileSafety, WhatIsKeptInMemoryHoldsWhateverComesToTheDisk)
{
    writeFile(kFile, "[A]\nk=1\n");
    keyFileCache::GetInstance().KeepInMemory(true);
    EXPECT_EQ(nuxSetRegistryInt(kFile, "A", "k", 2), 1);
    keyFileCache::GetInstance().KeepInMemory(false);
    writeFile(kFile, "[A]\nk=333\n");
    keyFileCache::GetInstance().LookAgain();
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 2);
}

TEST_F(KeyFileSafety, WhatIsSavedIsForThePhonesUserAlone)
{
    ASSERT_TRUE(QDir().mkpath(hostPath(kFolder)));
    ASSERT_EQ(nuxSetRegistryString(kFile, "account", "password", "secret"), 1);
    EXPECT_EQ(modeOf(kFile), 0600);
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(chmod(machine(kFile), 0644), 0);
    ASSERT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(modeOf(kFile), 0600);
    writeFile(kFile, QByteArray("\0\1\2", 3));
    ASSERT_EQ(chmod(machine(kFile), 0644), 0);
    ASSERT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(modeOf("/rundata/config/user/test.ini.bad"), 0600);
}

TEST_F(KeyFileSafety, OldFilesAndFoldersAreClosedAtTheStart)
{
    const char* const files[] = {"/rundata/config/system.ini", "/rundata/config/user/voip/sipAccount0.cfg",
                                 "/rundata/data/htpasswd"};
    const char* const folders[] = {"/rundata/config", "/rundata/config/user", "/rundata/config/user/voip",
                                   "/rundata/data", "/rundata/run"};
    for (const char* file : files) {
        writeFile(file, "[A]\nk=1\n");
        ASSERT_EQ(chmod(machine(file), 0644), 0);
    }
    QDir().mkpath(hostPath("/rundata/run"));
    for (const char* folder : folders)
        ASSERT_EQ(chmod(machine(folder), 0755), 0);
    writeFile("/rundata/config/fixed.ini", "[A]\nk=1\n");
    ASSERT_EQ(chmod(machine("/rundata/config/fixed.ini"), 0444), 0);
    writeFile("/elsewhere", "");
    ASSERT_EQ(chmod(machine("/elsewhere"), 0644), 0);
    ASSERT_EQ(symlink(machine("/elsewhere"), machine("/rundata/config/link")), 0);
    deviceFilesStart();
    for (const char* file : files)
        EXPECT_EQ(modeOf(file), 0600) << file;
    for (const char* folder : folders)
        EXPECT_EQ(modeOf(folder), 0700) << folder;
    EXPECT_EQ(modeOf("/rundata/config/fixed.ini"), 0400);
    EXPECT_EQ(modeOf("/elsewhere"), 0644);
    EXPECT_TRUE(deviceFilesAreStored());
}

TEST_F(KeyFileSafety, TheFoldersOfTheUsersMediaAreThereAndHisAlone)
{
    ASSERT_TRUE(QDir().mkpath(hostPath("/rundata/media/ring")));
    for (const char* folder : {"/rundata/media", "/rundata/media/ring"})
        ASSERT_EQ(chmod(machine(folder), 0777), 0);
    deviceFilesStart();
    for (const char* folder :
         {"/rundata/media", "/rundata/media/image", "/rundata/media/video", "/rundata/media/ring",
          "/rundata/media/wallpaper", "/rundata/media/contact-image"})
        EXPECT_EQ(modeOf(folder), 0700) << folder;
}

// Plays the phone's user among files of somebody else, which only the superuser can.
TEST_F(KeyFileSafety, WhatCannotBeClosedToOthersIsCounted)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can play another user";
    for (const char* folder : {"/rundata/config", "/rundata/data", "/rundata/media"})
        QDir(hostPath(folder)).removeRecursively();
    ASSERT_EQ(chmod(root().toUtf8(), 0755), 0);
    const char* const own = "/rundata/config/own.ini";
    const char* const closed = "/rundata/config/closed.ini";
    for (const char* file : {own, closed, "/rundata/config/a.ini", "/rundata/data/b.ini"})
        writeFile(file, "[A]\nk=1\n");
    for (const char* path : {"/rundata", "/rundata/config", "/rundata/data", own})
        ASSERT_EQ(chown(machine(path), kStranger, kStranger), 0);
    ASSERT_EQ(chmod(machine(closed), 0600), 0);
    const pid_t child = startChild([] {
        if (setresuid(kStranger, kStranger, kStranger) != 0)
            return false;
        deviceFilesStart();
        return traces("2 files and folders of the phone stay open to other users") == 1;
    });
    EXPECT_TRUE(endedWell(child));
    EXPECT_EQ(modeOf(own), 0600);
    mark();
    deviceFilesStart();
    EXPECT_TRUE(logged("trace").filter("stay open").isEmpty());
}

// The clocks stand still in the tests of the number: no tick makes anybody look at the file itself.
TEST_F(KeyFileSafety, WhoeverFindsTheNumberCutShortSharesItAgain)
{
    kit::holdClocks(true);
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxSetRegistryInt(kFile, "A", "k", 2), 1);
    ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 2);
    ASSERT_EQ(truncate(machine(kNumber), 0), 0);
    ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 2);
    for (int round = 3; round < 10; ++round) {
        ASSERT_TRUE(
            endedWell(startChild([round] { return nuxSetRegistryInt(kFile, "A", "k", round) != 0; })));
        ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), round);
    }
}

TEST_F(KeyFileSafety, AWriteThatFindsTheNumberCutShortIsSeenByTheOthers)
{
    kit::holdClocks(true);
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 1);
    int written[2];
    ASSERT_EQ(pipe(written), 0);
    const pid_t reader = startChild([&written] {
        char word = 0;
        return read(written[0], &word, 1) == 1 && nuxGetRegistryInt(kFile, "A", "k", 0) == 2;
    });
    ASSERT_EQ(truncate(machine(kNumber), 0), 0);
    EXPECT_EQ(nuxSetRegistryInt(kFile, "A", "k", 2), 1);
    EXPECT_EQ(write(written[1], "w", 1), 1);
    EXPECT_TRUE(endedWell(reader));
    close(written[0]);
    close(written[1]);
}

TEST_F(KeyFileSafety, WithoutRoomForTheNumberTheFileItselfIsLookedAt)
{
    kit::holdClocks(true);
    writeFile(kFile, "[A]\nk=1\n");
    const char* const next = "/rundata/config/user/next.ini";
    writeFile(next, "[A]\nk=22\n");
    QFile::remove(hostPath(kNumber));
    EXPECT_TRUE(endedWell(startChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit full = {0, RLIM_INFINITY};
        return setrlimit(RLIMIT_FSIZE, &full) == 0 && nuxGetRegistryInt(kFile, "A", "k", 0) == 1 &&
               rename(machine(next), machine(kFile)) == 0 && nuxGetRegistryInt(kFile, "A", "k", 0) == 22;
    })));
}

TEST_F(KeyFileSafety, TheNumberIsThatOfTheRootInForce)
{
    const QTemporaryDir next;
    QDir(next.path()).mkpath("rundata");
    sharedGeneration before, other;
    before.Follow(deviceGetRootNumber(), 0);
    deviceSetRoot(next.path().toUtf8());
    other.Follow(deviceGetRootNumber(), 0);
    before.Follow(deviceGetRootNumber(), 0);
    ASSERT_TRUE(before.IsShared() && other.IsShared());
    const uint64_t value = before.Value();
    other.CountUp();
    EXPECT_EQ(before.Value(), value + 1);
    deviceSetRoot(root().toUtf8());
}

TEST_F(KeyFileSafety, ANumberThatIsCutShortEndsNeitherReadersNorWriters)
{
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxSetRegistryInt(kFile, "A", "k", 2), 1);
    ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 2);
    ASSERT_TRUE(QFile::exists(hostPath(kNumber)));
    ASSERT_EQ(truncate(machine(kNumber), 0), 0);
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 2);
    ASSERT_EQ(truncate(machine(kNumber), 0), 0);
    EXPECT_EQ(nuxSetRegistryInt(kFile, "A", "k", 3), 1);
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 3);
    // The number is shared again.
    for (int round = 4; round < 30; ++round) {
        ASSERT_TRUE(
            endedWell(startChild([round] { return nuxSetRegistryInt(kFile, "A", "k", round) != 0; })));
        ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), round);
    }
}

TEST_F(KeyFileSafety, OtherBusErrorsEndTheProcessAsTheyShould)
{
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxSetRegistryInt(kFile, "A", "k", 2), 1); // the handler is there
    const pid_t child = startChild([] {
        signal(SIGALRM, SIG_DFL);
        alarm(20);
        raise(SIGBUS);
        raise(SIGBUS);
        return true;
    });
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_FALSE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_FALSE(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM);
}

// Plays a user for whom nothing of the phone can be written, which only the superuser can.
TEST_F(KeyFileSafety, OnAReadOnlyRootSettingsAreKeptInMemoryAndProcessesMeet)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can play another user";
    writeFile(kFile, "[A]\nk=1\nother=5\n");
    ASSERT_EQ(chmod(root().toUtf8(), 0755), 0);
    ASSERT_EQ(chmod(machine(kFile), 0644), 0);
    const pid_t child = startChild([this] {
        if (setresuid(kStranger, kStranger, kStranger) != 0)
            return false;
        deviceFilesStart();
        const bool kept = !deviceFilesAreStored() && nuxSetRegistryInt(kFile, "A", "k", 2) == 1 &&
                          nuxGetRegistryInt(kFile, "A", "k", 0) == 2 &&
                          nuxGetRegistryInt(kFile, "A", "other", 0) == 5 &&
                          nuxSetRegistryString(kFile, "A", "k", "a\nb") == 0 &&
                          nuxSetRegistryInt("/rundata/config/new.ini", "B", "n", 3) == 1 &&
                          nuxGetRegistryInt("/rundata/config/new.ini", "B", "n", 0) == 3;
        const QByteArray other = qgetenv("HX_RUN_FOLDER");
        const bool meet = messageServiceStart("app_other") && !messageServiceIsTaken("app_nobody") &&
                          messageServiceIsTaken("app_other");
        messageServiceStop();
        deviceFilesStop();
        return kept && meet && traces("settings are kept in memory") == 1 && !other.isEmpty() &&
               !QFile::exists(other);
    });
    EXPECT_TRUE(endedWell(child));
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\nother=5\n");
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/config/new.ini")));
}
