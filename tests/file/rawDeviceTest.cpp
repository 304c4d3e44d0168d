// Devices that are read record by record, the small files of drivers, and links.
#include "support/file/rawDevice.h"
#include "support/file/fileTools.h"
#include "tests/file/freshRoot.h"

#include <cerrno>
#include <fcntl.h>

namespace {

std::string linkAt(const std::string& path)
{
    char target[256] = {};
    return readlink(path.c_str(), target, sizeof target - 1) > 0 ? target : "";
}

TEST_F(FreshRoot, ADriversFileTakesTheTextAndNothingOfTheOldOne)
{
    makeFolder("/proc");
    EXPECT_EQ(rawDeviceSet("/proc/x_jitter", "16\n"), 1) << "as a shell makes it";
    EXPECT_EQ(rawDeviceSet("/proc/x_jitter", "0\n"), 1);
    EXPECT_EQ(get("/proc/x_jitter"), "0\n");
    EXPECT_EQ(rawDeviceSet("/none/x_jitter", "0\n"), 0);
    EXPECT_EQ(rawDeviceSet("/proc", "0\n"), 0);
}

TEST_F(FreshRoot, ADriversPipeThatNobodyReadsHoldsNobody)
{
    ASSERT_EQ(mkfifo(onMachine("/pipe").c_str(), 0600), 0);
    EXPECT_EQ(rawDeviceSet("/pipe", "0\n"), 0);
}

TEST_F(FreshRoot, ADriversLinkInASharedFolderIsNotFollowed)
{
    makeFolder("/tmp");
    ASSERT_EQ(chmod(onMachine("/tmp").c_str(), 01777), 0);
    put("/target", "mine");
    ASSERT_EQ(symlink("/target", onMachine("/tmp/x_jitter").c_str()), 0);
    EXPECT_EQ(rawDeviceSet("/tmp/x_jitter", "0\n"), 0);
    EXPECT_EQ(get("/target"), "mine");
    ASSERT_EQ(symlink("/target", onMachine("/tmp/TouchScreen").c_str()), 0);
    EXPECT_EQ(rawDeviceOpen("/tmp/TouchScreen", 1), -1);
    EXPECT_EQ(rawDeviceOpen("/tmp/TouchScreen", 0), -1);
}

TEST_F(FreshRoot, ADeviceIsReadByWholeRecords)
{
    put("/device", std::string(16, 'a') + std::string(16, 'b') + "rest");
    const int fd = rawDeviceOpen("/device", 1);
    ASSERT_GE(fd, 0);
    tagRawEvent event;
    EXPECT_EQ(rawDeviceRecord(fd), RAW_RECORD_SHORT);
    EXPECT_EQ(rawDeviceWait(fd, 0), 1);
    EXPECT_EQ(rawDeviceRead(fd, RAW_RECORD_SHORT, event), 1);
    EXPECT_EQ(event.nType, 0x6161);
    EXPECT_EQ(event.nCode, 0x6161);
    EXPECT_EQ(event.nValue, 0x61616161);
    EXPECT_EQ(event.time.tv_sec, 0x61616161);
    EXPECT_EQ(rawDeviceRead(fd, RAW_RECORD_SHORT, event), 1);
    event.nValue = 5;
    EXPECT_EQ(rawDeviceRead(fd, RAW_RECORD_SHORT, event), 0);
    EXPECT_EQ(event.nValue, 5);
    EXPECT_EQ(rawDeviceRead(fd, RAW_RECORD_SHORT, event), 0) << "the end is no error";
    rawDeviceClose(fd);
    EXPECT_EQ(rawDeviceWait(fd, 0), -1);
    EXPECT_EQ(rawDeviceWait(-1, 0), -1);
    EXPECT_EQ(rawDeviceRead(fd, RAW_RECORD_SHORT, event), -1);
}

TEST_F(FreshRoot, ALinkIsMadeOnceAndTakesThePlaceOfWhatIsThere)
{
    EXPECT_EQ(fileMakeLink("/data/file", "/etc/link"), 1);
    EXPECT_EQ(linkAt(onMachine("/etc/link")), "/data/file");
    struct stat before;
    ASSERT_EQ(lstat(onMachine("/etc/link").c_str(), &before), 0);
    EXPECT_EQ(fileMakeLink("/data/file", "/etc/link"), 1);
    struct stat after;
    ASSERT_EQ(lstat(onMachine("/etc/link").c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino) << "a right one stays";
    put("/etc/other", "a file");
    EXPECT_EQ(fileMakeLink("/data/file", "/etc/other"), 1);
    EXPECT_EQ(linkAt(onMachine("/etc/other")), "/data/file");
    EXPECT_EQ(fileMakeLink("/data/new", "/etc/other"), 1);
    EXPECT_EQ(linkAt(onMachine("/etc/other")), "/data/new");
}

TEST_F(FreshRoot, ALinkThatCannotBeMadeLeavesNothing)
{
    makeFolder("/etc");
    makeFolder("/etc/link");
    put("/etc/link/content", "x");
    EXPECT_EQ(fileMakeLink("/data/file", "/etc/link"), 0);
    EXPECT_EQ(get("/etc/link/content"), "x");
    EXPECT_NE(access(onMachine("/etc/link.new").c_str(), F_OK), 0);
    EXPECT_EQ(linkAt(onMachine("/etc/link.new")), "");
    put("/file", "x");
    EXPECT_EQ(fileMakeLink("/data/file", "/file/link"), 0);
}

} // namespace
