#include "support/file/keepAside.h"
#include "support/file/fileTools.h"
#include "tests/file/freshRoot.h"

namespace {

using Names = std::vector<std::string>;

class KeepAside : public FreshRoot
{
protected:
    KeepAside()
    {
        s_reports.clear();
        fileSetReportSink([](const char* text) { s_reports.push_back(text); });
    }
    ~KeepAside() override { fileSetReportSink(nullptr); }
    static Names s_reports;
};

Names KeepAside::s_reports;

TEST_F(KeepAside, FileIsMovedAndTold)
{
    put("/a.xml", "broken");
    EXPECT_EQ(fileKeepAside("/a.xml"), 1);
    EXPECT_EQ(namesIn("/"), Names{"a.xml.bad"});
    EXPECT_EQ(get("/a.xml.bad"), "broken");
    EXPECT_EQ(s_reports, Names{"/a.xml cannot be understood, kept as /a.xml.bad"});
}

TEST_F(KeepAside, EarlierOnesAreNotOverwritten)
{
    for (const char* content : {"first", "second", "third"}) {
        put("/a", content);
        EXPECT_EQ(fileKeepAside("/a"), 1);
    }
    EXPECT_EQ(namesIn("/"), (Names{"a.bad", "a.bad.1", "a.bad.2"}));
    EXPECT_EQ(get("/a.bad"), "first");
    EXPECT_EQ(get("/a.bad.2"), "third");
}

TEST_F(KeepAside, NoMoreThanEightAreKeptAndTheOldestGo)
{
    for (int i = 0; i < 20; ++i) {
        put("/a", std::to_string(i));
        EXPECT_EQ(fileKeepAside("/a"), 1);
        EXPECT_LE(namesIn("/").size(), size_t(FILE_KEPT_LIMIT));
    }
    EXPECT_EQ(namesIn("/").size(), size_t(FILE_KEPT_LIMIT));
    EXPECT_EQ(get("/a.bad.19"), "19");
    EXPECT_EQ(get("/a.bad.12"), "12");
    EXPECT_FALSE(isThere("/a.bad.11"));
}

TEST_F(KeepAside, FilesOfOtherNamesDoNotCount)
{
    for (const char* name : {"/a.bad.x", "/a.bad.007", "/a.bad.", "/a.badly", "/ba.bad"})
        put(name, "other");
    put("/a", "broken");
    EXPECT_EQ(fileKeepAside("/a"), 1);
    EXPECT_EQ(get("/a.bad"), "broken");
    EXPECT_EQ(namesIn("/").size(), 6u);
}

TEST_F(KeepAside, MissingFileAndFolderAreRefused)
{
    makeFolder("/d");
    EXPECT_EQ(fileKeepAside("/a"), 0);
    EXPECT_EQ(fileKeepAside("/d"), 0);
    EXPECT_EQ(fileKeepAside(""), 0);
    EXPECT_EQ(fileKeepAside(nullptr), 0);
    EXPECT_EQ(namesIn("/"), Names{"d"});
    EXPECT_TRUE(s_reports.empty());
}

TEST_F(KeepAside, CopyAsideLeavesTheFileInItsPlace)
{
    makeFolder("/d");
    put("/d/a", "broken");
    chString kept;
    EXPECT_EQ(fileCopyAside("/d/a", kept), 1);
    EXPECT_EQ(kept, "/d/a.bad");
    EXPECT_EQ(namesIn("/d"), (Names{"a", "a.bad"}));
}

TEST_F(KeepAside, LinkedFileIsKeptBesideTheFileItself)
{
    makeFolder("/etc");
    makeFolder("/data");
    put("/data/cal", "broken");
    ASSERT_EQ(symlink("/data/cal", onMachine("/etc/cal").c_str()), 0);
    EXPECT_EQ(fileKeepAside("/etc/cal"), 1);
    EXPECT_EQ(namesIn("/data"), Names{"cal.bad"});
}

TEST_F(KeepAside, WithoutASinkTheReportIsLogged)
{
    static std::string line;
    fileSetReportSink(nullptr);
    nuxSetErrorSink([](const char* text) { line = text; });
    put("/a", "broken");
    EXPECT_EQ(fileKeepAside("/a"), 1);
    nuxSetErrorSink(nullptr);
    EXPECT_NE(line.find("/a cannot be understood, kept as /a.bad"), std::string::npos);
}

} // namespace
