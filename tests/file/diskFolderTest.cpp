// A disk that somebody filled who wishes the phone no good.
#include "support/file/diskFolder.h"
#include "tests/file/freshRoot.h"

#include <algorithm>
#include <filesystem>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

using Names = std::vector<std::string>;

class DiskFolder : public FreshRoot
{
protected:
    DiskFolder()
    {
        for (const char* folder : {"/rundata", "/storage", "/phone", "/storage/uDisk1", "/storage/uDisk1/a"})
            makeFolder(folder);
        put("/rundata/secret", "secret");
        put("/storage/uDisk1/file", "content");
        put("/storage/uDisk1/a/deep", "deep");
    }
    void link(const std::string& target, const std::string& path) const
    {
        ASSERT_EQ(symlink(target.c_str(), onMachine(path).c_str()), 0);
    }
    Names listed(const char* path, int answer = 1) const
    {
        std::vector<tagDiskEntry> entries;
        EXPECT_EQ(diskListFolder(path, entries, nullptr), answer) << path;
        Names names;
        for (const tagDiskEntry& entry : entries)
            names.push_back(entry.strName + (entry.bFolder ? "/" : ""));
        std::sort(names.begin(), names.end());
        return names;
    }
    static std::string read(const char* path)
    {
        const int fd = diskOpenFile(path);
        char text[64] = {};
        const ssize_t count = fd >= 0 ? ::read(fd, text, sizeof text) : 0;
        if (fd >= 0)
            close(fd);
        return fd >= 0 ? std::string(text, size_t(std::max<ssize_t>(count, 0))) : "(not opened)";
    }
    // A pipe, a socket, a device where that is allowed, and links of all kinds.
    void plant() const
    {
        ASSERT_EQ(mkfifo(onMachine("/storage/uDisk1/pipe").c_str(), 0666), 0);
        if (mknod(onMachine("/storage/uDisk1/zero").c_str(), S_IFCHR | 0666, dev_t(0x105)) != 0)
            link("/dev/zero", "/storage/uDisk1/zero");
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        onMachine("/storage/uDisk1/sock").copy(address.sun_path, sizeof address.sun_path - 1);
        const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        close(fd);
        link("/rundata/secret", "/storage/uDisk1/byname");
        link(onMachine("/rundata/secret"), "/storage/uDisk1/outside");
        link("../../rundata", "/storage/uDisk1/up");
        link("a", "/storage/uDisk1/folder");
        link("nowhere", "/storage/uDisk1/dangling");
        link("round", "/storage/uDisk1/round");
    }
};

TEST_F(DiskFolder, HoldsItsPlainFilesAndFoldersAndNothingElse)
{
    plant();
    EXPECT_EQ(listed("/storage/uDisk1"), Names({"a/", "file"}));
    EXPECT_EQ(listed("/storage/uDisk1/a"), Names{"deep"});
}

TEST_F(DiskFolder, OnlyPlainFilesAreOpenedAndNothingIsWaitedFor)
{
    plant();
    EXPECT_EQ(read("/storage/uDisk1/file"), "content");
    EXPECT_EQ(read("/storage/uDisk1//a/./deep"), "deep");
    for (const char* name : {"pipe", "zero", "sock", "byname", "outside", "dangling", "round", "a", "none",
                             "up/secret", "folder/deep", "file/x", "../../rundata/secret", ""})
        EXPECT_EQ(read((std::string("/storage/uDisk1/") + name).c_str()), "(not opened)") << name;
    for (const char* path : {"/storage", "/storage/uDisk1", "/", "", "relative", "/storage/uDisk2/file"})
        EXPECT_EQ(read(path), "(not opened)") << path;
    EXPECT_EQ(diskOpenFile(nullptr), -1);
}

TEST_F(DiskFolder, NoFolderIsEnteredThroughALink)
{
    plant();
    EXPECT_EQ(diskIsFolder("/storage/uDisk1/a"), 1);
    for (const char* name : {"up", "folder", "dangling", "round", "file", "pipe", "none", "a/.."})
        EXPECT_EQ(diskIsFolder((std::string("/storage/uDisk1/") + name).c_str()), 0) << name;
    EXPECT_EQ(listed("/storage/uDisk1/up", 0), Names());
    EXPECT_EQ(listed("/storage/uDisk1/folder", 0), Names());
}

TEST_F(DiskFolder, TheDevicesOwnLinksAreFollowed)
{
    char name[] = "/tmp/hxDiskXXXXXX";
    const std::string disk = mkdtemp(name);
    link(disk, "/storage/uDisk2");
    std::filesystem::create_directory(disk + "/photos");
    std::filesystem::create_symlink("photos", disk + "/more");
    EXPECT_EQ(listed("/storage/uDisk2"), Names{"photos/"});
    EXPECT_EQ(diskIsFolder("/storage/uDisk2/photos"), 1);
    EXPECT_EQ(diskIsFolder("/storage/uDisk2/more"), 0);
    std::filesystem::remove_all(onMachine("/phone"));
    for (const char* own : {"/phone", "/mini-boot"}) {
        link(disk, own);
        EXPECT_EQ(listed(own), Names{"photos/"});
        EXPECT_EQ(devicePathFollow((std::string(own) + "/photos").c_str()), (disk + "/photos").c_str());
    }
    std::filesystem::remove_all(disk);
}

TEST_F(DiskFolder, FilesEmptyFoldersAndWhatElseHasTheNameAreRemoved)
{
    plant();
    makeFolder("/storage/uDisk1/empty");
    for (const char* name : {"file", "empty", "pipe", "byname", "up", "dangling"}) {
        EXPECT_EQ(diskRemove((std::string("/storage/uDisk1/") + name).c_str()), 1) << name;
        EXPECT_FALSE(isThere(std::string("/storage/uDisk1/") + name)) << name;
    }
    EXPECT_EQ(get("/rundata/secret"), "secret");
}

TEST_F(DiskFolder, FullFoldersDisksAndWhatLiesBehindLinksStay)
{
    plant();
    for (const char* path : {"/storage/uDisk1/a", "/storage/uDisk1/none", "/storage/uDisk1/up/secret",
                             "/storage/uDisk1/folder/deep", "/storage/uDisk1", "/storage", "/",
                             "/storage/uDisk1/../../rundata/secret"})
        EXPECT_EQ(diskRemove(path), 0) << path;
    EXPECT_EQ(get("/rundata/secret"), "secret");
    EXPECT_EQ(get("/storage/uDisk1/a/deep"), "deep");
}

TEST_F(DiskFolder, NamesAreWhateverADiskCanStore)
{
    const Names odd = {"\xff\xfe.jpg", "new\nline", "$(reboot)", std::string(255, 'n'), "\xe9\x9f\xb3"};
    for (const std::string& name : odd)
        put("/storage/uDisk1/a/" + name, "x");
    Names expected = odd;
    expected.push_back("deep");
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(listed("/storage/uDisk1/a"), expected);
    for (const std::string& name : odd)
        EXPECT_EQ(read(("/storage/uDisk1/a/" + name).c_str()), "x");
}

TEST_F(DiskFolder, IsGivenUpWhenNobodyWantsItAnyMore)
{
    std::vector<tagDiskEntry> entries;
    const std::atomic<bool> cancel{true};
    EXPECT_EQ(diskListFolder("/storage/uDisk1", entries, &cancel), 0);
}

TEST_F(DiskFolder, ListsSoManyEntriesAndNoMore)
{
    put("/storage/uDisk1/another", "content");
    std::vector<tagDiskEntry> entries(DISK_ENTRY_LIMIT - 2);
    EXPECT_EQ(diskListFolder("/storage/uDisk1", entries, nullptr), 1);
    EXPECT_EQ(entries.size(), size_t(DISK_ENTRY_LIMIT));
    EXPECT_FALSE(entries.back().strName.empty());
}

} // namespace
