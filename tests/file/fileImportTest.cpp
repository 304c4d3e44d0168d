// Files that come from a disk into the phone.
#include "support/file/chAtomicFile.h"
#include "support/file/chFileImport.h"
#include "tests/file/failingCalls.h"
#include "tests/file/freshRoot.h"

#include <condition_variable>
#include <fcntl.h>
#include <mutex>
#include <thread>

namespace {

using Names = std::vector<std::string>;

const size_t BLOCK = 256 * 1024;

class FileImport : public FreshRoot
{
protected:
    FileImport()
    {
        for (const char* folder : {"/media", "/storage", "/storage/uDisk1"})
            makeFolder(folder);
        for (size_t i = 0; i < 3 * BLOCK + 17; ++i)
            content += char(i * 7 + i / 251);
        put("/storage/uDisk1/film", content);
    }
    std::string content;
};

TEST_F(FileImport, TheTargetHasEveryByteOfTheSource)
{
    chFileImport copy("/storage/uDisk1/film", "/media/film");
    EXPECT_EQ(copy.Percent(), 0);
    EXPECT_EQ(copy.Run(), 1);
    EXPECT_EQ(copy.Percent(), 100);
    EXPECT_TRUE(get("/media/film") == content);
    EXPECT_EQ(namesIn("/media"), Names{"film"});
}

TEST_F(FileImport, AnEmptyFileIsCopied)
{
    put("/storage/uDisk1/empty", "");
    EXPECT_EQ(chFileImport("/storage/uDisk1/empty", "/media/empty").Run(), 1);
    EXPECT_TRUE(isThere("/media/empty"));
}

TEST_F(FileImport, AFileOfTheNameIsReplaced)
{
    put("/media/film", "older and longer than nothing");
    EXPECT_EQ(chFileImport("/storage/uDisk1/film", "/media/film").Run(), 1);
    EXPECT_TRUE(get("/media/film") == content);
}

TEST_F(FileImport, ATargetThatIsALinkGivesItsPlaceAndNothingBehindItIsTouched)
{
    put("/secret", "secret");
    ASSERT_EQ(symlink("/secret", onMachine("/media/film").c_str()), 0);
    ASSERT_EQ(symlink("/nowhere", onMachine("/media/other").c_str()), 0);
    EXPECT_EQ(chFileImport("/storage/uDisk1/film", "/media/film").Run(), 1);
    EXPECT_EQ(chFileImport("/storage/uDisk1/film", "/media/other").Run(), 1);
    EXPECT_EQ(get("/secret"), "secret");
    EXPECT_FALSE(isThere("/nowhere"));
    EXPECT_TRUE(get("/media/film") == content);
    EXPECT_TRUE(get("/media/other") == content);
}

TEST_F(FileImport, WhatIsNoFileIsNeitherReadNorReplaced)
{
    ASSERT_EQ(mkfifo(onMachine("/storage/uDisk1/pipe").c_str(), 0666), 0);
    ASSERT_EQ(mkfifo(onMachine("/media/pipe").c_str(), 0666), 0);
    ASSERT_EQ(symlink("film", onMachine("/storage/uDisk1/link").c_str()), 0);
    makeFolder("/media/folder");
    for (const char* source : {"/storage/uDisk1/pipe", "/storage/uDisk1/link", "/storage/uDisk1/none"})
        EXPECT_EQ(chFileImport(source, "/media/a").Run(), 0) << source;
    for (const char* target : {"/media/folder", "/media/pipe", "/none/a"})
        EXPECT_EQ(chFileImport("/storage/uDisk1/film", target).Run(), 0) << target;
    EXPECT_EQ(namesIn("/media"), Names({"folder", "pipe"}));
}

TEST_F(FileImport, AFullDiskLeavesNothingAndTheOldFileAsItWas)
{
    put("/media/film", "old");
    FailingCalls calls;
    calls.setSpace(2 * BLOCK);
    EXPECT_EQ(chFileImport("/storage/uDisk1/film", "/media/film").Run(), 0);
    EXPECT_EQ(get("/media/film"), "old");
    EXPECT_EQ(namesIn("/media"), Names{"film"});
}

// The memory of this process is a file that cannot be read at its beginning.
TEST_F(FileImport, AReadErrorIsNoEndOfTheFile)
{
    ASSERT_EQ(symlink("/proc/self", onMachine("/storage/uDisk2").c_str()), 0);
    put("/media/film", "old");
    EXPECT_EQ(chFileImport("/storage/uDisk2/mem", "/media/film").Run(), 0);
    EXPECT_EQ(get("/media/film"), "old");
    EXPECT_EQ(namesIn("/media"), Names{"film"});
}

TEST_F(FileImport, LeavesNoDescriptorOpen)
{
    const auto descriptors = [] {
        int count = 0;
        for (int fd = 0; fd < 1024; ++fd)
            count += fcntl(fd, F_GETFD) >= 0;
        return count;
    };
    makeFolder("/media/folder");
    const int before = descriptors();
    EXPECT_EQ(chFileImport("/storage/uDisk1/film", "/media/film").Run(), 1);
    EXPECT_EQ(descriptors(), before);
    EXPECT_EQ(chFileImport("/storage/uDisk1/film", "/media/folder").Run(), 0);
    EXPECT_EQ(descriptors(), before) << "of one that failed";
}

TEST_F(FileImport, WritesThatTakeAPartAreGoneOnWith)
{
    FailingCalls calls;
    calls.setMostBytes(1000);
    EXPECT_EQ(chFileImport("/storage/uDisk1/film", "/media/film").Run(), 1);
    EXPECT_TRUE(get("/media/film") == content);
}

TEST_F(FileImport, WhatALossOfPowerLeftIsSweptAndWhatIsBeingWrittenStays)
{
    for (const char* name : {"/media/.film.save0", "/media/.save3", "/media/.other.mp4.save15"})
        put(name, "half");
    for (const char* name : {"/media/film.save0", "/media/.film.saved", "/media/.hidden"})
        put(name, "kept");
    chAtomicFile writing;
    ASSERT_EQ(writing.Open("/media/now"), 1);
    chAtomicFile::Sweep("/media");
    EXPECT_EQ(namesIn("/media"), Names({".film.saved", ".hidden", ".now.save0", ".save3", "film.save0"}));
    EXPECT_EQ(writing.Commit(0), 1);
    chAtomicFile::Sweep("/none");
}

// Holds the copy in a write, so that something can happen meanwhile.
class Gate
{
public:
    Gate()
    {
        s_gate = this;
        fileGetSystemCalls().write = [](int fd, const void* data, size_t size) {
            s_gate->pass();
            return fileDefaultSystemCalls().write(fd, data, size);
        };
    }
    ~Gate() { fileGetSystemCalls() = fileDefaultSystemCalls(); }
    void waitForWrite(int number)
    {
        std::unique_lock<std::mutex> guard(m_lock);
        m_changed.wait(guard, [&] { return m_writes == number; });
    }
    void open()
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_isOpen = true;
        m_changed.notify_all();
    }

private:
    void pass()
    {
        std::unique_lock<std::mutex> guard(m_lock);
        ++m_writes;
        m_changed.notify_all();
        m_changed.wait(guard, [&] { return m_isOpen || m_writes < 2; });
    }

    static Gate* s_gate;
    std::mutex m_lock;
    std::condition_variable m_changed;
    int m_writes = 0;
    bool m_isOpen = false;
};

Gate* Gate::s_gate = nullptr;

TEST_F(FileImport, OneThatIsCancelledLeavesNothing)
{
    Gate gate;
    chFileImport copy("/storage/uDisk1/film", "/media/film");
    int done = -1;
    std::thread thread([&] { done = copy.Run(); });
    gate.waitForWrite(2);
    EXPECT_EQ(copy.Percent(), 33);
    EXPECT_FALSE(isThere("/media/film")) << "nobody sees half a film";
    EXPECT_EQ(copy.Cancel(), 1);
    gate.open();
    thread.join();
    EXPECT_EQ(done, 0);
    EXPECT_EQ(namesIn("/media"), Names());
    EXPECT_EQ(copy.Cancel(), 1);
}

TEST_F(FileImport, ACancelThatComesTooLateSaysSo)
{
    chFileImport copy("/storage/uDisk1/film", "/media/film");
    EXPECT_EQ(copy.Run(), 1);
    EXPECT_EQ(copy.Cancel(), 0);
    EXPECT_TRUE(isThere("/media/film"));
}

} // namespace
