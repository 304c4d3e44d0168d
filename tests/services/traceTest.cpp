#include "support/host/trace.h"
#include "support/host/checksum.h"
#include "support/host/text.h"
#include "support/host/upgrade.h"
#include "tests/kit/phoneTest.h"
#include <QFile>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace {

class Trace : public PhoneTest
{
};

// What work writes to the standard error stream.
QByteArray printedBy(const std::function<void()>& work)
{
    QTemporaryDir dir;
    QFile file(dir.filePath("err"));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    const int saved = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
    work();
    dup2(saved, STDERR_FILENO);
    close(saved);
    file.seek(0);
    return file.readAll();
}

bool isUnmapped(char* byte)
{
    const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    unsigned char state = 0;
    char* start = byte - reinterpret_cast<uintptr_t>(byte) % page;
    return mincore(start, page, &state) != 0 && errno == ENOMEM;
}

// True when nobody may use the byte any more.
bool isGone(char* byte)
{
#if defined(__SANITIZE_ADDRESS__)
    // What is too large to be kept for a while goes back to the system at once.
    return __asan_address_is_poisoned(byte) != 0 || isUnmapped(byte);
#else
    return isUnmapped(byte);
#endif
}

} // namespace

TEST_F(Trace, ALineIsFormattedAndKept)
{
    nuxTrace(TRACE_DETAIL, "Push media: %s (%d)", "/a/ü.mp4", 3);
    EXPECT_EQ(traces(), QStringList{QString::fromUtf8("Push media: /a/ü.mp4 (3)")});
}

TEST_F(Trace, AScopeLogsEntryAndExit)
{
    {
        const chTraceStack scope("dlgWan::%s", "Save");
        nuxTrace(TRACE_DETAIL, "inside");
    }
    EXPECT_EQ(traces(), QStringList({"enter dlgWan::Save", "inside", "leave dlgWan::Save"}));
}

TEST_F(Trace, NotesAreWrittenToTheErrorStreamAsOneLine)
{
    EXPECT_EQ(printedBy([] { nuxTrace(TRACE_NOTE, "a note\n"); }), "a note\n");
    if (!getenv("HX_TRACE")) {
        EXPECT_EQ(printedBy([] { nuxTrace(TRACE_DETAIL, "a detail"); }), "");
    }
    EXPECT_EQ(traces().first(), "a note");
}

TEST_F(Trace, ABrokenContractIsInTheLog)
{
    nuxErrorMessage(false, "file.cpp", 12, "m_p != NULL");
    nuxErrorMessage(true, "file.cpp", 13, "fine");
    EXPECT_EQ(traces(), QStringList{"file.cpp:12: m_p != NULL"});
}

TEST_F(Trace, LinesOfManyThreadsAreAllKeptWhole)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 100; ++i)
                nuxTrace(TRACE_DETAIL, "thread %d line %d", t, i);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QStringList found = traces();
    EXPECT_EQ(found.size(), 400);
    found.removeDuplicates();
    EXPECT_EQ(found.size(), 400);
}

TEST_F(Trace, TextsKeepEveryCharacterBothWays)
{
    const QString text = QString::fromUtf8("aé中😀");
    EXPECT_EQ(toQString(fromQString(text)), text);
    EXPECT_EQ(fromQString(text), "aé中😀");
    EXPECT_EQ(toQString(chString()), QString());
}

TEST_F(Trace, AChecksumIsTheFilesMd5InLowerCase)
{
    writeFile("/rundata/a.bin", "abc");
    writeFile("/rundata/empty.bin", "");
    writeFile("/rundata/large.bin", QByteArray(1000000, 'a'));
    EXPECT_EQ(md5GetFileCheckSum("/rundata/a.bin"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(md5GetFileCheckSum("/rundata/empty.bin"), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(md5GetFileCheckSum("/rundata/large.bin"), "7707d6ae4e027c70eea2a935c2296f21");
    EXPECT_EQ(md5GetFileCheckSum("/rundata/none.bin"), "");
    EXPECT_EQ(md5GetFileCheckSum("/rundata"), "");
    EXPECT_EQ(md5GetFileCheckSum(nullptr), "");
}

TEST_F(Trace, AHelpersMemoryIsFreed)
{
    // So large that it has pages of its own, which go with it.
    const size_t size = 64 << 20;
    void* memory = malloc(size);
    ASSERT_NE(memory, nullptr);
    memset(memory, 1, size);
    char* inside = static_cast<char*>(memory) + size / 2;
    ASSERT_FALSE(isGone(inside));
    qFree(memory);
    EXPECT_TRUE(isGone(inside));
    qFree(nullptr);
}

TEST_F(Trace, AnUpgradeIsRunningWhenItSaysSo)
{
    EXPECT_EQ(CAutoUpgrade::GetInstance(), CAutoUpgrade::GetInstance());
    EXPECT_EQ(CAutoUpgrade::GetInstance()->IsUpgrading(), 0);
    CAutoUpgrade::GetInstance()->SetUpgrading(1);
    EXPECT_EQ(CAutoUpgrade::GetInstance()->IsUpgrading(), 1);
    CAutoUpgrade::GetInstance()->SetUpgrading(0);
}
