#include "support/xml/xmlFile.h"
#include "support/file/fileSystemCalls.h"
#include "support/file/keepAside.h"
#include "tests/file/freshRoot.h"
#include "tests/kit/fewDescriptors.h"

#include <errno.h>

namespace {

using Names = std::vector<std::string>;

const char SAVED[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<l>\n    <i n=\"1\"/>\n</l>\n";

class XmlFile : public FreshRoot
{
protected:
    XmlFile()
    {
        fileSetReportSink([](const char*) { ++s_reports; });
        s_reports = 0;
        good.AddChildElement("l")->AddChildElement("i")->GetAttributeValue("n") = "1";
    }
    ~XmlFile() override
    {
        fileSetReportSink(nullptr);
        fileGetSystemCalls() = fileDefaultSystemCalls();
    }
    static void fillDisk()
    {
        fileGetSystemCalls().write = [](int, const void*, size_t) {
            errno = ENOSPC;
            return ssize_t(-1);
        };
    }

    static int s_reports;
    xmlFile good;
};

int XmlFile::s_reports;

TEST_F(XmlFile, IsSavedAndLoaded)
{
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(get("/a.xml"), SAVED);
    xmlFile loaded(nullptr);
    EXPECT_EQ(loaded.LoadFromFile("/a.xml"), 1);
    EXPECT_EQ(loaded.ExportToText(), SAVED);
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
}

// Nobody who reads it within the same limit could load it again.
TEST_F(XmlFile, WhatHasGrownBeyondTheLimitOfItsLoadIsNotSaved)
{
    const std::string old = "<l><i n=\"1\"/></l>";
    put("/a.xml", old);
    xmlFile loaded;
    ASSERT_EQ(loaded.LoadFromFile("/a.xml", 100), 1);
    xmlElement* list = loaded.GetRootElement();
    list->GetFirstChildElement()->GetAttributeValue("n") = std::string(100, 'x').c_str();
    EXPECT_EQ(loaded.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(get("/a.xml"), old);
    list->GetFirstChildElement()->GetAttributeValue("n") = "2";
    EXPECT_EQ(loaded.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(loaded.LoadFromFile("/a.xml", 100), 1);
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1) << "one that was not loaded";
}

TEST_F(XmlFile, PathGivenAtTheStartIsLoadedAtOnce)
{
    put("/a.xml", SAVED);
    xmlFile loaded("/a.xml");
    EXPECT_NE(xmlFindElementFromRoot(&loaded, "l", "i", 0), nullptr);
}

TEST_F(XmlFile, NullGivesAnEmptyDocument)
{
    xmlFile empty(nullptr);
    EXPECT_EQ(empty.GetFirstChild(), nullptr);
    EXPECT_EQ(xmlFile().GetFirstChild(), nullptr);
}

TEST_F(XmlFile, UnreadableFileGivenAtTheStartLeavesAnEmptyDocument)
{
    put("/broken.xml", "<l><i/>");
    makeFolder("/d");
    for (const char* path : {"/none.xml", "/broken.xml", "/d", ""}) {
        xmlFile loaded(path);
        EXPECT_EQ(loaded.GetFirstChild(), nullptr) << path;
    }
}

TEST_F(XmlFile, LoadOfAMissingFileFails)
{
    EXPECT_EQ(good.LoadFromFile("/none.xml"), 0);
    EXPECT_EQ(good.GetFirstChild(), nullptr);
    EXPECT_STRNE(good.GetErrorText(), "");
    EXPECT_EQ(good.LoadFromFile(nullptr), 0);
    EXPECT_EQ(good.LoadFromFile(""), 0);
}

TEST_F(XmlFile, LoadOfADamagedFileFailsAndKeepsItsBeginning)
{
    put("/a.xml", "<l>\n<i/></m>");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    EXPECT_NE(xmlFindElementFromRoot(&good, "l", "i", 0), nullptr);
    EXPECT_EQ(good.GetErrorLine(), 2);
    put("/empty.xml", "");
    EXPECT_EQ(good.LoadFromFile("/empty.xml"), 0);
}

TEST_F(XmlFile, LoadReplacesWhatWasThere)
{
    put("/a.xml", "<m/>");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 1);
    EXPECT_EQ(good.FindChildElement("l"), nullptr);
}

TEST_F(XmlFile, SaveIntoAMissingFolderFails)
{
    EXPECT_EQ(good.SaveToFile("/none/a.xml"), 0);
    EXPECT_EQ(good.SaveToFile(nullptr), 0);
    EXPECT_EQ(good.SaveToFile(""), 0);
    EXPECT_EQ(namesIn("/"), Names{});
}

TEST_F(XmlFile, SaveOnAFullDiskKeepsTheOldFile)
{
    put("/a.xml", "<old/>");
    fillDisk();
    EXPECT_EQ(good.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(get("/a.xml"), "<old/>");
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
}

TEST_F(XmlFile, SaveOverAReadOnlyFileFails)
{
    put("/a.xml", "<old/>");
    ASSERT_EQ(chmod(onMachine("/a.xml").c_str(), 0444), 0);
    EXPECT_EQ(good.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(get("/a.xml"), "<old/>");
}

TEST_F(XmlFile, DocumentThatCouldNotBeLoadedAgainIsNotSaved)
{
    put("/a.xml", "<old/>");
    xmlFile empty;
    EXPECT_EQ(empty.SaveToFile("/a.xml"), 0);
    empty.AddChildXMLNode(xmlTypeComment, "no element");
    EXPECT_EQ(empty.SaveToFile("/a.xml"), 0);
    xmlFile deep;
    xmlBaseNode* node = &deep;
    for (int i = 0; i < XML_DEPTH_LIMIT; ++i)
        node = node->AddChildElement("a");
    EXPECT_EQ(deep.SaveToFile("/deep.xml"), 1);
    EXPECT_EQ(deep.LoadFromFile("/deep.xml"), 1);
    xmlFile two;
    two.AddChildXMLNode(xmlTypeDocType, "a");
    two.AddChildElement("a");
    two.AddChildElement("b");
    EXPECT_EQ(two.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(get("/a.xml"), "<old/>");
}

TEST_F(XmlFile, DocumentTooDeepIsNotSaved)
{
    xmlBaseNode* node = &good;
    for (int i = 0; i <= XML_DEPTH_LIMIT; ++i)
        node = node->AddChildElement("a");
    EXPECT_EQ(good.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(namesIn("/"), Names{});
}

TEST_F(XmlFile, DocumentTooLargeIsNotSaved)
{
    const auto largest = [this](size_t size) {
        good.ClearDocument();
        // The declaration, the tags and the last line end are 47 bytes.
        SetValue(good.AddChildElement("a"), chString(std::string(size - 47, 'v').c_str()));
        return good.SaveToFile("/a.xml");
    };
    EXPECT_EQ(largest(XML_TEXT_LIMIT), 1);
    EXPECT_EQ(get("/a.xml").size(), size_t(XML_TEXT_LIMIT));
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 1);
    put("/a.xml", "<old/>");
    EXPECT_EQ(largest(XML_TEXT_LIMIT + 1), 0);
    EXPECT_EQ(get("/a.xml"), "<old/>");
}

TEST_F(XmlFile, DocumentWhoseLinesWouldMakeItTooLargeIsSavedWithoutBlanks)
{
    std::string text;
    for (int i = 0; i < 40; ++i)
        text += "<a>";
    for (int i = 0; i < 500000; ++i)
        text += "<b/>";
    for (int i = 0; i < 40; ++i)
        text += "</a>";
    ASSERT_EQ(good.ParseDocument(text.c_str()), 1);
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 1);
    EXPECT_LT(get("/a.xml").size(), 4u * 1024 * 1024);
}

TEST_F(XmlFile, FileTooLargeIsRefusedWithItsPlace)
{
    put("/a.xml", "<a>\n<b/>" + std::string(XML_TEXT_LIMIT, ' ') + "</a>");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    EXPECT_STREQ(good.GetErrorText(), "The document is too large.");
    EXPECT_EQ(good.GetErrorLine(), 2);
    EXPECT_EQ(good.GetErrorColumn(), XML_TEXT_LIMIT - 3);
    EXPECT_NE(xmlFindElementFromRoot(&good, "a", "b", 0), nullptr);
}

TEST_F(XmlFile, FileThatCouldNotBeLoadedIsKeptAsideBeforeItIsReplaced)
{
    put("/a.xml", "<l><i n='precious'/>");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    good.ClearDocument();
    good.AddChildElement("new");
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(get("/a.xml.bad"), "<l><i n='precious'/>");
    EXPECT_EQ(namesIn("/"), (Names{"a.xml", "a.xml.bad"}));
    EXPECT_EQ(s_reports, 1);
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(namesIn("/"), (Names{"a.xml", "a.xml.bad"}));
}

TEST_F(XmlFile, FileThatCouldNotBeLoadedAtTheStartIsKeptAsideToo)
{
    put("/a.xml", "damaged");
    xmlFile file("/a.xml");
    file.AddChildElement("new");
    EXPECT_EQ(file.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(get("/a.xml.bad"), "damaged");
}

TEST_F(XmlFile, EachOfSeveralDamagedFilesIsKeptAside)
{
    put("/a.xml", "damaged a");
    put("/b.xml", "damaged b");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    EXPECT_EQ(good.LoadFromFile("/b.xml"), 0);
    EXPECT_EQ(good.ParseDocument("<new/>"), 1);
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(good.SaveToFile("/b.xml"), 1);
    EXPECT_EQ(get("/a.xml.bad"), "damaged a");
    EXPECT_EQ(get("/b.xml.bad"), "damaged b");
}

TEST_F(XmlFile, FileThatWasRepairedMeanwhileIsNotKeptAside)
{
    put("/a.xml", "damaged");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    put("/a.xml", "<repaired/>");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 1);
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
}

TEST_F(XmlFile, MissingFileLeavesNothingToKeepAside)
{
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    good.AddChildElement("new");
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
}

TEST_F(XmlFile, DamagedFileStaysInItsPlaceWhenTheSaveFails)
{
    put("/a.xml", "damaged");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    good.AddChildElement("new");
    fillDisk();
    EXPECT_EQ(good.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(get("/a.xml"), "damaged");
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
}

TEST_F(XmlFile, DamagedFileThatCannotBeKeptIsNotReplaced)
{
    put("/a.xml", "damaged");
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 0);
    good.AddChildElement("new");
    fileGetSystemCalls().link = [](const char*, const char*) {
        errno = EROFS;
        return -1;
    };
    EXPECT_EQ(good.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(get("/a.xml"), "damaged");
}

TEST_F(XmlFile, DamagedFileThatThisDocumentNeverSawIsKeptAside)
{
    put("/a.xml", "<l><i n='a & b'/></l>");
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(get("/a.xml"), SAVED);
    EXPECT_EQ(get("/a.xml.bad"), "<l><i n='a & b'/></l>");
    EXPECT_EQ(s_reports, 1);
}

TEST_F(XmlFile, FileThatWasDamagedSinceItWasLoadedIsKeptAside)
{
    put("/a.xml", SAVED);
    EXPECT_EQ(good.LoadFromFile("/a.xml"), 1);
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
    put("/a.xml", "<l><i n='precious'/>");
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(get("/a.xml.bad"), "<l><i n='precious'/>");
}

TEST_F(XmlFile, GoodFileThatThisDocumentNeverSawIsReplacedAndNotKept)
{
    put("/a.xml", "<other/>");
    EXPECT_EQ(good.SaveToFile("/a.xml"), 1);
    EXPECT_EQ(get("/a.xml"), SAVED);
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
}

TEST_F(XmlFile, FileThatCouldNotBeReadIsLeftAlone)
{
    put("/a.xml", SAVED);
    xmlFile file;
    {
        const FewDescriptors none(0);
        EXPECT_EQ(file.LoadFromFile("/a.xml"), 0);
        EXPECT_EQ(file.GetLastRead(), FILE_READ_FAILED);
    }
    // It can be read again, but the document does not hold what is in it.
    file.AddChildElement("new");
    EXPECT_EQ(file.SaveToFile("/a.xml"), 0);
    EXPECT_EQ(get("/a.xml"), SAVED);
    EXPECT_EQ(namesIn("/"), Names{"a.xml"});
    EXPECT_EQ(file.LoadFromFile("/a.xml"), 1);
    EXPECT_EQ(file.SaveToFile("/a.xml"), 1);
}

TEST_F(XmlFile, FileThatCannotBeReadAtTheSaveIsLeftAlone)
{
    for (int left = 0; left < 6; ++left) {
        put("/a.xml", "<other/>");
        int result;
        {
            const FewDescriptors few(left);
            result = good.SaveToFile("/a.xml");
        }
        EXPECT_EQ(get("/a.xml"), result ? SAVED : "<other/>") << left;
        EXPECT_EQ(namesIn("/"), Names{"a.xml"}) << left;
    }
}

} // namespace
