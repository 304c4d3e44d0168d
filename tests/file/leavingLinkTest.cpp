// Paths that go through a link to a folder: inside the device root, and out of it to a plugged disk.
#include "support/file/deviceRoot.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include "tests/file/freshRoot.h"

#include <filesystem>

namespace {

using Names = std::vector<std::string>;

class LinkedFolder : public FreshRoot
{
protected:
    LinkedFolder()
    {
        makeFolder("/rundata");
        makeFolder("/storage");
        EXPECT_EQ(symlink("/rundata", onMachine("/data").c_str()), 0);
        char name[] = "/tmp/hxDiskXXXXXX";
        m_disk = mkdtemp(name);
        EXPECT_EQ(symlink(m_disk.c_str(), onMachine("/storage/uDisk").c_str()), 0);
        fileSetReportSink([](const char* text) { s_report = text; });
    }
    ~LinkedFolder() override
    {
        fileSetReportSink(nullptr);
        std::filesystem::remove_all(m_disk);
    }
    std::string m_disk; // machine path
    static std::string s_report;
};

std::string LinkedFolder::s_report;

TEST_F(LinkedFolder, FilesBehindItAreRemovedAndRenamed)
{
    for (const char* folder : {"/data", "/storage/uDisk"}) {
        const std::string a = std::string(folder) + "/a", b = std::string(folder) + "/b";
        FILE* file = fopen(devicePathFollow(a.c_str()), "w");
        ASSERT_NE(file, nullptr);
        fclose(file);
        EXPECT_EQ(fileRename(a.c_str(), b.c_str()), 1) << folder;
        EXPECT_EQ(pathFileExist(a.c_str()), 0);
        EXPECT_EQ(pathFileExist(b.c_str()), 1);
        EXPECT_EQ(fileRemove(b.c_str()), 1) << folder;
        EXPECT_EQ(pathFileExist(b.c_str()), 0);
    }
}

TEST_F(LinkedFolder, FoldersAreMadeBehindItAndNotOnTheMachine)
{
    EXPECT_EQ(pathMakeDirectories("/data/x/y"), 1);
    EXPECT_EQ(namesIn("/rundata"), Names{"x"});
    EXPECT_EQ(pathMakeDirectories("/storage/uDisk/z"), 1);
    EXPECT_TRUE(std::filesystem::is_directory(m_disk + "/z"));
}

TEST_F(LinkedFolder, RemovingALinkLeavesItsFolder)
{
    EXPECT_EQ(fileRemove("/data"), 1);
    EXPECT_TRUE(isThere("/rundata"));
}

TEST_F(LinkedFolder, DamagedFileOnADiskIsKeptBesideItUnderANameOfTheDevice)
{
    std::ofstream(m_disk + "/a.xml") << "broken";
    chString kept;
    EXPECT_EQ(fileCopyAside("/storage/uDisk/a.xml", kept), 1);
    EXPECT_EQ(kept, "/storage/uDisk/a.xml.bad");
    EXPECT_EQ(s_report, "/storage/uDisk/a.xml cannot be understood, kept as /storage/uDisk/a.xml.bad");
    EXPECT_EQ(nuxDumpTextFileA(kept), "broken");
    EXPECT_EQ(fileRemove(kept), 1);
    EXPECT_EQ(fileKeepAside("/storage/uDisk/a.xml"), 1);
    EXPECT_FALSE(std::filesystem::exists(m_disk + "/a.xml"));
    EXPECT_TRUE(std::filesystem::exists(m_disk + "/a.xml.bad"));
}

TEST_F(LinkedFolder, LinkToAFileOnADiskIsKeptBesideThatFile)
{
    std::ofstream(m_disk + "/a.xml") << "broken";
    ASSERT_EQ(symlink("/storage/uDisk/a.xml", onMachine("/rundata/l.xml").c_str()), 0);
    chString kept;
    EXPECT_EQ(fileCopyAside("/data/l.xml", kept), 1);
    EXPECT_EQ(kept, "/storage/uDisk/a.xml.bad");
    EXPECT_TRUE(std::filesystem::exists(m_disk + "/a.xml.bad"));
}

TEST_F(LinkedFolder, WhatIsKeptIsForItsOwnerOnly)
{
    put("/rundata/a.ini", "broken");
    ASSERT_EQ(chmod(onMachine("/rundata/a.ini").c_str(), 0644), 0);
    ASSERT_EQ(fileKeepAside("/data/a.ini"), 1);
    struct stat info;
    ASSERT_EQ(stat(onMachine("/rundata/a.ini.bad").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
}

TEST_F(LinkedFolder, PrivateFolderIsMadeAndAnOpenOneIsClosed)
{
    struct stat info;
    EXPECT_EQ(pathMakePrivateDirectory("/data/x/run"), 1);
    ASSERT_EQ(stat(onMachine("/rundata/x/run").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
    ASSERT_EQ(chmod(onMachine("/rundata/x/run").c_str(), 0755), 0);
    EXPECT_EQ(pathMakePrivateDirectory("/data/x/run"), 1);
    ASSERT_EQ(stat(onMachine("/rundata/x/run").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
    put("/rundata/file", "");
    EXPECT_EQ(pathMakePrivateDirectory("/data/file"), 0);
    EXPECT_EQ(pathMakePrivateDirectory(""), 0);
    EXPECT_EQ(pathMakePrivateDirectory(nullptr), 0);
}

} // namespace
