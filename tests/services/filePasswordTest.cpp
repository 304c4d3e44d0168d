#include "support/host/password.h"
#include "tests/file/failingCalls.h"
#include "tests/kit/fewDescriptors.h"
#include "tests/kit/phoneTest.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTimer>
#include <ctime>
#include <sys/stat.h>
#include <thread>

namespace {

const char* const kFile = "/rundata/data/htpasswd";

class FilePassword : public PhoneTest
{
protected:
    FilePassword() { QFile::remove(hostPath(kFile)); }
    static int isRight(const char* user, const char* password)
    {
        return filePassword(kFile).IsRightUserPassword(user, password);
    }
    static int store(const char* user, const char* password)
    {
        filePassword file(kFile);
        return file.SetUserPassword(user, password) && file.SaveToFile(kFile);
    }
    mode_t modeOf(const char* path) const
    {
        struct stat info = {};
        stat(hostPath(path).toUtf8(), &info);
        return info.st_mode & 07777;
    }
};

} // namespace

TEST_F(FilePassword, AMissingFileIsAdminWithAnEmptyPassword)
{
    EXPECT_EQ(isRight("admin", ""), 1);
    EXPECT_EQ(isRight("admin", "x"), 0);
    EXPECT_EQ(isRight("root", ""), 0);
    EXPECT_EQ(isRight(nullptr, ""), 0);
    EXPECT_EQ(isRight("admin", nullptr), 0);
    EXPECT_FALSE(QFile::exists(hostPath(kFile)));
}

TEST_F(FilePassword, ASetPasswordIsRightFromThenOnAndTheOldOneIsNot)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    EXPECT_EQ(isRight("admin", "secret"), 1);
    EXPECT_EQ(isRight("admin", ""), 0);
    EXPECT_EQ(isRight("admin", "Secret"), 0);
    EXPECT_EQ(isRight("Admin", "secret"), 0);
    ASSERT_EQ(store("admin", ""), 1);
    EXPECT_EQ(isRight("admin", ""), 1);
    EXPECT_EQ(isRight("admin", "secret"), 0);
}

TEST_F(FilePassword, AChangeCountsBeforeItIsSaved)
{
    filePassword file(kFile);
    ASSERT_EQ(file.SetUserPassword("admin", "new"), 1);
    EXPECT_EQ(file.IsRightUserPassword("admin", "new"), 1);
    EXPECT_EQ(isRight("admin", "new"), 0);
}

TEST_F(FilePassword, TheFileHoldsASaltedHashThatOnlyItsOwnerReads)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    const QByteArray first = readFile(kFile);
    EXPECT_TRUE(first.startsWith("admin:$y$"));
    EXPECT_FALSE(first.contains("secret"));
    EXPECT_EQ(modeOf(kFile), 0600u);
    ASSERT_EQ(store("admin", "secret"), 1);
    EXPECT_NE(readFile(kFile), first);
}

TEST_F(FilePassword, ASaveTakesAwayRightsThatTheFileHad)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    ASSERT_EQ(chmod(hostPath(kFile).toUtf8(), 0644), 0);
    ASSERT_EQ(store("admin", "other"), 1);
    EXPECT_EQ(modeOf(kFile), 0600u);
}

TEST_F(FilePassword, SavingWithoutAChangeKeepsTheEmptyPasswordOfAdmin)
{
    ASSERT_EQ(filePassword(kFile).SaveToFile(kFile), 1);
    EXPECT_EQ(isRight("admin", ""), 1);
    EXPECT_EQ(isRight("admin", "x"), 0);
}

TEST_F(FilePassword, NamesAndPasswordsMayHoldAnyText)
{
    const char* const names[] = {"a:b", "with blank", "# x", "%41", "ü中", "two\nlines", ":", "$y$"};
    filePassword file(kFile);
    for (const char* name : names)
        ASSERT_EQ(file.SetUserPassword(name, name), 1);
    ASSERT_EQ(file.SaveToFile(kFile), 1);
    for (const char* name : names) {
        EXPECT_EQ(isRight(name, name), 1) << name;
        EXPECT_EQ(isRight(name, "x"), 0) << name;
    }
    EXPECT_EQ(isRight("A", "%41"), 0);
    EXPECT_EQ(isRight("admin", ""), 1);
}

TEST_F(FilePassword, APasswordOf99CharactersCounts)
{
    QByteArray longest;
    for (int i = 0; i < 99; ++i)
        longest += "é";
    ASSERT_EQ(store("admin", longest.constData()), 1);
    EXPECT_EQ(isRight("admin", longest.constData()), 1);
    EXPECT_EQ(isRight("admin", longest.left(longest.size() - 2).constData()), 0);
}

TEST_F(FilePassword, WhatCannotBeHashedIsRefused)
{
    filePassword file(kFile);
    EXPECT_EQ(file.SetUserPassword("admin", std::string(600, 'x').c_str()), 0);
    EXPECT_EQ(file.SetUserPassword("", "x"), 0);
    EXPECT_EQ(file.SetUserPassword(nullptr, "x"), 0);
    EXPECT_EQ(file.SetUserPassword("admin", nullptr), 0);
    EXPECT_EQ(file.IsRightUserPassword("admin", ""), 1);
    EXPECT_EQ(file.IsRightUserPassword("admin", std::string(600, 'x').c_str()), 0);
}

TEST_F(FilePassword, ADamagedFileMakesEveryCheckFail)
{
    for (const QByteArray& text : {QByteArray(""), QByteArray("\0\1\2garbage", 10), QByteArray("admin:\n"),
                                   QByteArray("admin:plain\n"), QByteArray("no colon\n")}) {
        writeFile(kFile, text);
        EXPECT_EQ(isRight("admin", ""), 0) << text.toStdString();
        EXPECT_EQ(isRight("admin", "plain"), 0) << text.toStdString();
    }
    writeFile(kFile, "admin:$y$j9T$broken\n");
    EXPECT_EQ(isRight("admin", ""), 0);
    QFile::remove(hostPath(kFile));
    ASSERT_TRUE(QDir().mkpath(hostPath(kFile)));
    EXPECT_EQ(isRight("admin", ""), 0);
}

TEST_F(FilePassword, AFileThatIsDamagedInPartLetsNobodyIn)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    writeFile(kFile, readFile(kFile) + "no line of a password file\n");
    EXPECT_EQ(isRight("admin", "secret"), 0);
}

TEST_F(FilePassword, LinesOfARemarkAndEmptyOnesAreNoDamage)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    writeFile(kFile, "# who may do what\n\n" + readFile(kFile) + "\r\n#admin:plain\n#\n");
    EXPECT_EQ(isRight("admin", "secret"), 1);
    EXPECT_EQ(isRight("admin", ""), 0);
}

TEST_F(FilePassword, AZeroInALineIsDamage)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    const QByteArray line = readFile(kFile);
    writeFile(kFile, line.chopped(1) + QByteArray("\0\n", 2));
    EXPECT_EQ(isRight("admin", "secret"), 0);
    writeFile(kFile, QByteArray("a\0b", 3) + line.mid(5) + line);
    EXPECT_EQ(isRight("admin", "secret"), 0);
}

TEST_F(FilePassword, ASaveThatFailsLeavesTheDamagedFileAndNoOther)
{
    const char* const kept = "/rundata/data/htpasswd.bad";
    writeFile(kFile, "no password file");
    filePassword file(kFile);
    ASSERT_EQ(file.SetUserPassword("admin", "new"), 1);
    int failed = 0;
    for (int call = 0;; ++call) {
        FailingCalls disk;
        disk.failAt(call, EIO);
        const int isSaved = file.SaveToFile(kFile);
        if (!disk.failed())
            break;
        if (isSaved)
            writeFile(kFile, "no password file");
        else
            EXPECT_FALSE(QFile::exists(hostPath(kept))) << call;
        failed += isSaved ? 0 : 1;
        EXPECT_EQ(readFile(kFile), "no password file") << call;
        QFile::remove(hostPath(kept));
    }
    EXPECT_GT(failed, 2);
}

TEST_F(FilePassword, ADamagedFileIsKeptAsideByASave)
{
    writeFile(kFile, "no password file");
    ASSERT_EQ(store("admin", "new"), 1);
    EXPECT_EQ(isRight("admin", "new"), 1);
    EXPECT_EQ(readFile("/rundata/data/htpasswd.bad"), "no password file");
    writeFile(kFile, "");
    ASSERT_EQ(store("admin", "newer"), 1);
    EXPECT_TRUE(QFile::exists(hostPath("/rundata/data/htpasswd.bad.1")));
}

TEST_F(FilePassword, AFileThatCouldNotBeReadLetsNobodyInAndIsNotReplaced)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    const QByteArray before = readFile(kFile);
    std::unique_ptr<filePassword> file;
    {
        const FewDescriptors none(0);
        file = std::make_unique<filePassword>(kFile);
    }
    EXPECT_EQ(file->IsRightUserPassword("admin", "secret"), 0);
    EXPECT_EQ(file->IsRightUserPassword("admin", ""), 0);
    EXPECT_EQ(file->SetUserPassword("other", "word"), 1);
    EXPECT_EQ(file->SaveToFile(kFile), 0);
    EXPECT_EQ(readFile(kFile), before);
    EXPECT_FALSE(QFile::exists(hostPath("/rundata/data/htpasswd.bad")));
    EXPECT_EQ(isRight("admin", "secret"), 1);
}

TEST_F(FilePassword, ASaveThatIsNotPossibleIsZero)
{
    EXPECT_EQ(filePassword(kFile).SaveToFile("/rundata/none/htpasswd"), 0);
    EXPECT_EQ(filePassword(kFile).SaveToFile(nullptr), 0);
}

// All of "secret".
TEST_F(FilePassword, HashesOfEveryBoundedCostLetIn)
{
    for (const char* hash :
         {"$1$salt$ez2vlPGdaLYkJam5pWs/Y1", "$5$salt$kpa26zwgX83BPSR8d7w93OIXbFt/d3UOTZaAu5vsTM6",
          "$6$rounds=100000$salt$w7KyVDyVQ1Ki.i9lRcLj."
          "Nm7FbZD0fiAEzSBdZi97dTM7OQulYlxEavyNLmiD7RwPspmny4OUAUbY5Mwo"
          "yL5h1",
          "$2b$05$abcdefghijklmnopqrstuuOQiyCxlgf/oeuTqixKmWdcYUh4Hjl0a",
          "$gy$j9T$LN0q1vAU0nBUAqc3bDRkz/$S5Fj5ckPpR9ZazhUvJZ.ERbVzXRasOFT5yFhFdcs.nC",
          "$7$CU..../....SodiumChloride$SgDhJBZvaSDBMst5B70Nz13SP83yo8VuHlxDcyI3x22",
          "$y$j75$abcd$4kXmLgaKDvIX6kdRHPMTHEFMzZbz3KU11lQ0dx6AKZ3",
          "$y$jBT$LN0q1vAU0nBUAqc3bDRkz/$WjG5gvvae0NgCu5K4z.4QRdlfDX.VH7AoduRCqRJv75"}) {
        writeFile(kFile, QByteArray("admin:") + hash + "\n");
        mark();
        EXPECT_EQ(isRight("admin", "secret"), 1) << hash;
        EXPECT_EQ(isRight("admin", "wrong"), 0) << hash;
        EXPECT_TRUE(traces().filter("costs too much").isEmpty()) << hash;
    }
}

TEST_F(FilePassword, AHashThatCostsTooMuchLetsNobodyInAndIsTracedOnce)
{
    for (const char* hash : {"$6$rounds=1000001$salt$/"
                             "bpvTjCC0iqUycwQF6ajejMFC.NWUwzQk4j0F6qnn50c68H5lfXq06XmFpNyTaNdWJEXXvIaljxA05R"
                             ".JHTAY1",
                             "$2b$13$abcdefghijklmnopqrstuuyd9ipDgNyTEie103vumVuve9x.2WtxW",
                             "$y$jCT$salt$7aCpuqfe4IemhDRAe86/qGuQV9BohwSasDcfazxn4NC",
                             "$y$j9T/.$LN0q1vAU0nBUAqc3bDRkz/$dc8UiAhYNVGbYOyQpgzwB6RtbWyYnbyImtfD48ZfyU9",
                             "$sha1$4000$abcdefgh$jeOWHbZ7maksf3rfQG2UezgX7GAQ"}) {
        writeFile(kFile, QByteArray("admin:") + hash + "\n");
        mark();
        const filePassword file(kFile);
        EXPECT_EQ(file.IsRightUserPassword("admin", "secret"), 0) << hash;
        EXPECT_EQ(file.IsRightUserPassword("admin", ""), 0) << hash;
        EXPECT_EQ(traces().filter("has a hash that costs too much for \"admin\"").size(), 1) << hash;
    }
}

// They would take hours, or memory that no phone has.
TEST_F(FilePassword, AbsurdCostsAreNotPaid)
{
    for (const char* hash : {"$6$rounds=999999999$salt$x",
                             "$5$rounds=999999999$salt$x",
                             "$6$rounds=99999999999999999999$salt$x",
                             "$6$rounds=-1$s$x",
                             "$6$rounds=$s$x",
                             "$2b$31$abcdefghijklmnopqrstuuabc",
                             "$2y$99$a",
                             "$2b$",
                             "$y$jFT$LN0q1vAU0nBUAqc3bDRkz/$abc",
                             "$y$jzzzz$x$y",
                             "$y$",
                             "$y$j",
                             "$gy$jjT$a$b",
                             "$7$jU..../....salt$x",
                             "$7$CUzzzzzzzzzsalt$x",
                             "$7$",
                             "$sha1$999999999$a$b",
                             "$md5,rounds=999999999$a$b",
                             "$3$$x",
                             "$"}) {
        writeFile(kFile, QByteArray("admin:") + hash + "\n");
        mark();
        EXPECT_EQ(isRight("admin", "secret"), 0) << hash;
        EXPECT_EQ(traces().filter("costs too much").size(), 1) << hash;
    }
}

TEST_F(FilePassword, ASaveKeepsTheHashesOfOthersWhateverTheyCost)
{
    writeFile(kFile, "boss:$6$rounds=999999999$salt$x\n");
    ASSERT_EQ(store("admin", "new"), 1);
    EXPECT_TRUE(readFile(kFile).startsWith("boss:$6$rounds=999999999$salt$x\nadmin:$y$"));
    EXPECT_EQ(isRight("admin", "new"), 1);
    ASSERT_EQ(store("boss", "other"), 1);
    EXPECT_EQ(isRight("boss", "other"), 1);
}

// The dearest method with the longest password takes seconds; the answer would be yes.
TEST_F(FilePassword, APhoneThatEndsDoesNotWaitForAHash)
{
    writeFile(
        kFile,
        "admin:$6$rounds=1000000$salt$spu60/92rgBxOMeqqgDi5FFSN6AxyPWaDR8/Tn5KyyThZQyDxvwDtgMKNL8.bFPACqa"
        "Qkv9H5NwZifuuG8GC/0\n");
    int answer = -1;
    QTimer::singleShot(0, [&answer] {
        QTimer::singleShot(0, &QCoreApplication::quit);
        answer = isRight("admin", std::string(500, 'a').c_str());
    });
    QCoreApplication::exec();
    EXPECT_EQ(answer, 0);
}

// Of this process, in nanoseconds: what else the machine does must not count.
qint64 cpuTime()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

TEST_F(FilePassword, TheUserInterfaceGoesOnDuringAHash)
{
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&turns] { ++turns; });
    timer.start(0);
    filePassword file(kFile);
    file.SetUserPassword("admin", "secret");
    EXPECT_GT(turns, 0);
    turns = 0;
    EXPECT_EQ(file.IsRightUserPassword("admin", "secret"), 1);
    EXPECT_GT(turns, 0);
}

TEST_F(FilePassword, AnotherThreadMayAskToo)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    int answer = 0;
    std::thread([&answer] { answer = isRight("admin", "secret"); }).join();
    EXPECT_EQ(answer, 1);
}

TEST_F(FilePassword, AnUnknownNameTakesAsLongAsAKnownOne)
{
    ASSERT_EQ(store("admin", "secret"), 1);
    const filePassword file(kFile);
    const auto fastest = [&file](const char* user, const char* password) {
        qint64 best = INT64_MAX;
        for (int i = 0; i < 5; ++i) {
            const qint64 begin = cpuTime();
            file.IsRightUserPassword(user, password);
            best = std::min(best, cpuTime() - begin);
        }
        return best;
    };
    const qint64 known = fastest("admin", "wrong");
    EXPECT_GT(fastest("admin", "secret"), known / 2);
    EXPECT_GT(fastest("nobody", "wrong"), known / 2);
    EXPECT_GT(known, 100000);
}
