// What becomes of key files when writers are killed, meet each other, or cannot write.
#include "host/services/keyfiles/keyFile.h"
#include "support/file/deviceRoot.h"
#include "support/file/fileSystemCalls.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <functional>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const char* const kFile = "/rundata/config/user/test.ini";

class RegistryReliability : public PhoneTest
{
protected:
    // A process of its own that does work and ends with its answer; it shares nothing with this one.
    static pid_t startChild(const std::function<bool()>& work)
    {
        const pid_t child = fork();
        if (child == 0)
            _exit(work() ? 0 : 1);
        return child;
    }
    static bool endedWell(pid_t child)
    {
        int status = 0;
        return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    keyFile onDisk() const
    {
        keyFile file;
        const QByteArray text = readFile(kFile);
        EXPECT_TRUE(file.Parse(std::string_view(text.constData(), static_cast<size_t>(text.size()))));
        return file;
    }
    QStringList leftBeside() const
    {
        QStringList names = QDir(hostPath("/rundata/config/user")).entryList(QDir::Files | QDir::Hidden);
        names.removeIf([](const QString& name) { return !name.contains("test.ini") || name == "test.ini"; });
        return names;
    }
};

// A write that was refused because the other one was at work is told, and made again.
bool storeInTheEnd(const char* section, const char* key, int value)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (nuxSetRegistryInt(kFile, section, key, value))
            return true;
    }
    return false;
}

void realSleepMicroseconds(unsigned us)
{
    const timespec time = {0, static_cast<long>(us) * 1000};
    nanosleep(&time, nullptr);
}

} // namespace

TEST_F(RegistryReliability, AWriterThatIsKilledAtAnyMomentLeavesAWholeFile)
{
    writeFile(kFile, "; the phone's settings\n[Const]\nkept=yes\n[Child]\n[Parent]\n");
    std::mt19937 random(12345);
    for (int round = 1; round <= 500; ++round) {
        const pid_t child = startChild([round] {
            for (int i = 0;; ++i)
                nuxSetRegistryString(kFile, "Child", "value",
                                     std::string(20 + i % 200, 'a' + round % 26).c_str());
            return true;
        });
        ASSERT_GT(child, 0);
        realSleepMicroseconds(random() % 2500);
        ASSERT_TRUE(storeInTheEnd("Parent", "round", round));
        realSleepMicroseconds(random() % 1500);
        ASSERT_EQ(kill(child, SIGKILL), 0);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);

        const keyFile file = onDisk();
        ASSERT_NE(file.Find("Const", "kept"), nullptr) << "round " << round;
        ASSERT_EQ(*file.Find("Const", "kept"), "yes");
        ASSERT_EQ(*file.Find("Parent", "round"), std::to_string(round));
        ASSERT_EQ(file.Text().rfind("; the phone's settings\n", 0), 0u);
        if (const std::string* value = file.Find("Child", "value")) {
            ASSERT_EQ(value->find_first_not_of((*value)[0]), std::string::npos);
        }
        ASSERT_EQ(nuxGetRegistryInt(kFile, "Parent", "round", 0), round);
    }
    // The next save clears what the killed ones left.
    nuxSetRegistryInt(kFile, "Parent", "round", 0);
    EXPECT_LE(leftBeside().size(), 1);
}

TEST_F(RegistryReliability, TwoProcessesThatWriteOneFileAtOnceLoseNothing)
{
    constexpr int kWrites = 1500;
    constexpr int kKeys = 50;
    writeFile(kFile, "[Const]\nkept=yes\n");
    const auto writer = [](const char* section) {
        for (int i = 0; i < kWrites; ++i) {
            if (!storeInTheEnd(section, ("k" + std::to_string(i % kKeys)).c_str(), i))
                return false;
        }
        return true;
    };
    const pid_t child = startChild([&] { return writer("Child"); });
    EXPECT_TRUE(writer("Parent"));
    EXPECT_TRUE(endedWell(child));
    for (int i = kWrites - kKeys; i < kWrites; ++i) {
        const std::string key = "k" + std::to_string(i % kKeys);
        EXPECT_EQ(nuxGetRegistryInt(kFile, "Child", key.c_str(), -1), i);
        EXPECT_EQ(nuxGetRegistryInt(kFile, "Parent", key.c_str(), -1), i);
    }
    EXPECT_EQ(*onDisk().Find("Const", "kept"), "yes");
}

TEST_F(RegistryReliability, AWriteOfAnotherProcessIsSeenAtTheNextRead)
{
    writeFile(kFile, "[A]\nk=0\n");
    for (int round = 1; round <= 50; ++round) {
        EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", -1), round - 1);
        ASSERT_TRUE(
            endedWell(startChild([round] { return nuxSetRegistryInt(kFile, "A", "k", round) != 0; })));
        ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", -1), round);
    }
}

TEST_F(RegistryReliability, AChangeByAForeignProgramIsSeenWithinMilliseconds)
{
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 1);
    QFile file(hostPath(kFile));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[A]\nk=2\n");
    file.close();
    EXPECT_TRUE(kit::waitUntil([] { return nuxGetRegistryInt(kFile, "A", "k", 0) == 2; }, 2000));
    ASSERT_TRUE(QFile::remove(hostPath(kFile)));
    EXPECT_TRUE(kit::waitUntil([] { return nuxGetRegistryInt(kFile, "A", "k", 0) == 0; }, 2000));
}

TEST_F(RegistryReliability, WithoutARunFolderChangesAreSeenAllTheSame)
{
    QTemporaryDir bare;
    deviceSetRoot(bare.path().toUtf8().constData());
    ASSERT_EQ(nuxSetRegistryInt("/x.ini", "A", "k", 1), 1);
    EXPECT_EQ(nuxGetRegistryInt("/x.ini", "A", "k", 0), 1);
    ASSERT_TRUE(endedWell(startChild([] { return nuxSetRegistryInt("/x.ini", "A", "k", 2) != 0; })));
    EXPECT_EQ(nuxGetRegistryInt("/x.ini", "A", "k", 0), 2);
    EXPECT_FALSE(QFile::exists(bare.path() + "/rundata"));
    deviceSetRoot(root().toUtf8().constData());
}

TEST_F(RegistryReliability, AMissingFolderGivesZeroAndIsNotMade)
{
    EXPECT_EQ(nuxSetRegistryString("/rundata/none/test.ini", "A", "k", "1"), 0);
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/none")));
}

TEST_F(RegistryReliability, AReadOnlyFileGivesZeroAndStays)
{
    writeFile(kFile, "[A]\nk=1\n");
    ASSERT_EQ(chmod(hostPath(kFile).toUtf8(), 0444), 0);
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 1);
    EXPECT_TRUE(leftBeside().isEmpty());
}

// As the superuser a folder cannot be made read-only by its mode.
TEST_F(RegistryReliability, AFolderWithoutTheRightToWriteGivesZeroAndTheOldFileStays)
{
    writeFile(kFile, "[A]\nk=1\n");
    const QByteArray folder = hostPath("/rundata/config/user").toUtf8();
    ASSERT_EQ(chmod(root().toUtf8(), 0755), 0);
    ASSERT_EQ(chmod(hostPath(kFile).toUtf8(), 0666), 0);
    ASSERT_EQ(chmod(folder, 0555), 0);
    const pid_t child = startChild([] {
        return (geteuid() != 0 || seteuid(65534) == 0) && nuxSetRegistryString(kFile, "A", "k", "2") == 0;
    });
    EXPECT_TRUE(endedWell(child));
    ASSERT_EQ(chmod(folder, 0755), 0);
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
    EXPECT_TRUE(leftBeside().isEmpty());
}

TEST_F(RegistryReliability, AFileWithoutTheRightToReadGivesDefaultsAndIsLeftAlone)
{
    writeFile(kFile, "[A]\nk=1\n");
    const QByteArray folder = hostPath("/rundata/config/user").toUtf8();
    const QByteArray file = hostPath(kFile).toUtf8();
    for (const QByteArray& path : {root().toUtf8(), folder})
        ASSERT_EQ(chmod(path, 0777), 0);
    const pid_t child = startChild([file] {
        if (geteuid() == 0 && (chown(file, 65534, 65534) != 0 || seteuid(65534) != 0))
            return false;
        return chmod(file, 0) == 0 && nuxGetRegistryInt(kFile, "A", "k", 7) == 7 &&
               nuxSetRegistryString(kFile, "A", "n", "2") == 0;
    });
    EXPECT_TRUE(endedWell(child));
    ASSERT_EQ(chmod(file, 0600), 0);
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
    EXPECT_TRUE(leftBeside().isEmpty());
}

namespace {

// Makes one call of the table fail: the nth one of its kind.
int g_countdown = -1;
int g_error = EIO;

bool failsNow()
{
    if (g_countdown < 0)
        return false;
    errno = g_error;
    return g_countdown-- == 0;
}

const fileSystemCalls kReal = fileDefaultSystemCalls();

struct FailingCall
{
    const char* name;
    int error;
    void (*install)(fileSystemCalls&);
};

const FailingCall kFailingCalls[] = {
    {"open", ENOSPC,
     [](fileSystemCalls& calls) {
         calls.open = [](const char* p, int f, mode_t m) { return failsNow() ? -1 : kReal.open(p, f, m); };
     }},
    {"flock", ENOLCK,
     [](fileSystemCalls& calls) {
         calls.flock = [](int fd, int operation) { return failsNow() ? -1 : kReal.flock(fd, operation); };
     }},
    {"fstat", EIO,
     [](fileSystemCalls& calls) {
         calls.fstat = [](int fd, struct stat* info) { return failsNow() ? -1 : kReal.fstat(fd, info); };
     }},
    {"lstat", EIO,
     [](fileSystemCalls& calls) {
         calls.lstat = [](const char* p, struct stat* info) {
             return failsNow() ? -1 : kReal.lstat(p, info);
         };
     }},
    {"access", EROFS,
     [](fileSystemCalls& calls) {
         calls.access = [](const char* p, int mode) { return failsNow() ? -1 : kReal.access(p, mode); };
     }},
    {"write", ENOSPC,
     [](fileSystemCalls& calls) {
         calls.write = [](int fd, const void* d, size_t n) {
             return failsNow() ? ssize_t(-1) : kReal.write(fd, d, n);
         };
     }},
    {"fchmod", EPERM,
     [](fileSystemCalls& calls) {
         calls.fchmod = [](int fd, mode_t mode) { return failsNow() ? -1 : kReal.fchmod(fd, mode); };
     }},
    {"fsync", ENOSPC,
     [](fileSystemCalls& calls) { calls.fsync = [](int fd) { return failsNow() ? -1 : kReal.fsync(fd); }; }},
    {"dup", EMFILE,
     [](fileSystemCalls& calls) { calls.dup = [](int fd) { return failsNow() ? -1 : kReal.dup(fd); }; }},
    {"close", EIO,
     [](fileSystemCalls& calls) {
         calls.close = [](int fd) {
             const bool fails = failsNow();
             const int result = kReal.close(fd);
             return fails ? -1 : result;
         };
     }},
    {"rename", EIO,
     [](fileSystemCalls& calls) {
         calls.rename = [](const char* from, const char* to) {
             return failsNow() ? -1 : kReal.rename(from, to);
         };
     }},
};

} // namespace

TEST_F(RegistryReliability, EachFailingCallOfASaveLeavesTheOldFileOrTheNewOne)
{
    const QByteArray oldText = "; c\n[A]\nk=1\n";
    const QByteArray newText = "; c\n[A]\nk=2\n";
    for (const FailingCall& failing : kFailingCalls) {
        int failures = 0;
        for (int nth = 0; nth < 20; ++nth) {
            writeFile(kFile, oldText);
            g_error = failing.error;
            g_countdown = nth;
            failing.install(fileGetSystemCalls());
            const int result = nuxSetRegistryString(kFile, "A", "k", "2");
            const bool failed = g_countdown < 0;
            g_countdown = -1;
            fileGetSystemCalls() = fileDefaultSystemCalls();
            failures += failed ? 1 : 0;
            EXPECT_EQ(readFile(kFile), result ? newText : oldText) << failing.name << " " << nth;
            EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), result ? 2 : 1) << failing.name << " " << nth;
            EXPECT_TRUE(failed || result) << failing.name << " " << nth;
            if (!failed)
                break;
        }
        EXPECT_GT(failures, 0) << failing.name;
        EXPECT_TRUE(leftBeside().isEmpty()) << failing.name << leftBeside().join(' ').toStdString();
    }
}

TEST_F(RegistryReliability, AFullDiskGivesZeroAndTheOldFileStays)
{
    writeFile(kFile, "[A]\nk=1\n");
    g_error = ENOSPC;
    fileGetSystemCalls().write = [](int fd, const void* data, size_t size) {
        // A part still fits.
        static bool first;
        first = !first;
        errno = ENOSPC;
        return first ? kReal.write(fd, data, size / 2) : ssize_t(-1);
    };
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
    fileGetSystemCalls() = fileDefaultSystemCalls();
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
    EXPECT_TRUE(leftBeside().isEmpty());
}

TEST_F(RegistryReliability, GarbageGivesDefaultsAndIsKeptAsideAtTheNextSave)
{
    QByteArray garbage(2000, '\0');
    for (qsizetype i = 0; i < garbage.size(); ++i)
        garbage[i] = static_cast<char>(i * 7);
    writeFile(kFile, garbage);
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 9), 9);
    EXPECT_EQ(readFile(kFile), garbage);
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(readFile(kFile), "[A]\nk=2\n");
    EXPECT_EQ(readFile("/rundata/config/user/test.ini.bad"), garbage);
}

TEST_F(RegistryReliability, AFileFarTooLargeIsKeptAsideAtTheNextSave)
{
    const QByteArray large = "[A]\nk=" + QByteArray(keyFile::SIZE_LIMIT, 'x') + "\n";
    writeFile(kFile, large);
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 9), 9);
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 1);
    EXPECT_EQ(readFile("/rundata/config/user/test.ini.bad").size(), large.size());
}

TEST_F(RegistryReliability, GarbageThatCannotBeReplacedStaysInItsPlaceAlone)
{
    writeFile(kFile, QByteArray("\0\1\2", 3));
    g_countdown = 0;
    fileGetSystemCalls().rename = [](const char* from, const char* to) {
        return failsNow() ? -1 : kReal.rename(from, to);
    };
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
    fileGetSystemCalls() = fileDefaultSystemCalls();
    EXPECT_EQ(readFile(kFile), QByteArray("\0\1\2", 3));
    EXPECT_TRUE(leftBeside().isEmpty());
}

TEST_F(RegistryReliability, GarbageThatCannotBeKeptIsNotReplaced)
{
    writeFile(kFile, QByteArray("\0\1\2", 3));
    g_countdown = 0;
    g_error = ENOSPC;
    fileGetSystemCalls().link = [](const char* from, const char* to) {
        return failsNow() ? -1 : kReal.link(from, to);
    };
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
    fileGetSystemCalls() = fileDefaultSystemCalls();
    EXPECT_EQ(readFile(kFile), QByteArray("\0\1\2", 3));
    EXPECT_TRUE(leftBeside().isEmpty());
}

TEST_F(RegistryReliability, AFolderInTheFilesPlaceGivesDefaultsAndZero)
{
    ASSERT_TRUE(QDir().mkpath(hostPath(kFile)));
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 9), 9);
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "2"), 0);
    EXPECT_TRUE(QFileInfo(hostPath(kFile)).isDir());
}

TEST_F(RegistryReliability, AWriteThatWouldMakeTheFileTooLargeIsRefused)
{
    writeFile(kFile, "[A]\nk=1\n");
    const std::string large(keyFile::SIZE_LIMIT, 'x');
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "big", large.c_str()), 0);
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 1);
}
