#include "support/xml/xmlFile.h"
#include "tests/file/freshRoot.h"

#include <sys/resource.h>

namespace {

class Hostile : public testing::Test
{
protected:
    void expectRefused(const std::string& text)
    {
        EXPECT_EQ(doc.ParseDocument(text.data(), int(text.size())), 0);
        EXPECT_STRNE(doc.GetErrorText(), "");
        EXPECT_GE(doc.GetErrorLine(), 1);
    }
    std::string body() const
    {
        const std::string text = doc.ExportToText().GetText();
        return text.substr(text.find('\n') + 1);
    }
    static long peakMegabytes()
    {
        struct rusage usage;
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss / 1024;
    }

    xmlDocument doc;
};

TEST_F(Hostile, DamagedTextKeepsWhatCameBeforeIt)
{
    expectRefused("<l>\n  <a k='1'/>\n  <b>text</b>\n  <c k=2/>\n</l>");
    EXPECT_EQ(body(), "<l>\n    <a k=\"1\"/>\n    <b>text</b>\n</l>\n");
    EXPECT_EQ(doc.GetErrorLine(), 4);
    EXPECT_GT(doc.GetErrorColumn(), 0);
}

TEST_F(Hostile, TruncatedTextKeepsItsBeginning)
{
    expectRefused("<l><a>1</a><b>2</b><c>the text that was cut");
    EXPECT_EQ(body(), "<l>\n    <a>1</a>\n    <b>2</b>\n    <c/>\n</l>\n");
}

TEST_F(Hostile, EveryTruncationIsRefusedOrWhole)
{
    const std::string whole = "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e 'f'>]><a b='c&e;'><!--d-->"
                              "<![CDATA[e]]>\xc3\xa9\xf0\x9f\x98\x80&#65;<?g h?><i/></a>";
    for (size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(doc.ParseDocument(whole.data(), int(length)), 0) << whole.substr(0, length);
    EXPECT_EQ(doc.ParseDocument(whole.data(), int(whole.size())), 1);
}

TEST_F(Hostile, GoodParseForgetsTheErrorBefore)
{
    expectRefused("<a>");
    EXPECT_EQ(doc.ParseDocument("<b/>"), 1);
    EXPECT_EQ(doc.GetErrorLine(), 0);
    EXPECT_STREQ(doc.GetErrorText(), "");
    EXPECT_EQ(body(), "<b/>\n");
}

TEST_F(Hostile, NoTextIsRefused)
{
    expectRefused("");
    expectRefused("  \n ");
    EXPECT_EQ(doc.ParseDocument(nullptr), 0);
    EXPECT_STRNE(doc.GetErrorText(), "");
}

TEST_F(Hostile, TextOutsideOfTheElementsIsRefused)
{
    expectRefused("text");
    expectRefused("<a/>text");
    EXPECT_EQ(body(), "<a/>\n");
    expectRefused("<a/><![CDATA[x]]>");
    expectRefused("<a/></hx-document><hx-document>");
    expectRefused("<a/>&amp;");
}

TEST_F(Hostile, DeepestAllowedLevelIsReadAndOneMoreIsNot)
{
    const auto nested = [](int depth) {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text += "<a>";
        for (int i = 0; i < depth; ++i)
            text += "</a>";
        return text;
    };
    EXPECT_EQ(doc.ParseDocument(nested(XML_DEPTH_LIMIT).c_str()), 1);
    expectRefused(nested(XML_DEPTH_LIMIT + 1));
    EXPECT_EQ(doc.ParseDocument(("<b/>" + nested(XML_DEPTH_LIMIT)).c_str()), 1);
    expectRefused("<b/>" + nested(XML_DEPTH_LIMIT + 1));
}

TEST_F(Hostile, MillionLevelsEndAtTheLimit)
{
    std::string text;
    for (int i = 0; i < 1000000; ++i)
        text += "<a>";
    expectRefused(text);
    EXPECT_NE(doc.GetRootElement(), nullptr);
}

TEST_F(Hostile, BillionLaughsAreRefused)
{
    std::string text = "<!DOCTYPE l [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 10; ++i) {
        text += "<!ENTITY l" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k)
            text += "&l" + std::to_string(i - 1) + ";";
        text += "'>";
    }
    expectRefused(text + "]><l>&l9;</l>");
    expectRefused(text + "]><l k='&l9;'/>");
}

TEST_F(Hostile, ManyReferencesToOneLargeEntityAreRefused)
{
    std::string references;
    for (int i = 0; i < 100000; ++i)
        references += "&e;";
    const std::string head = "<!DOCTYPE a [<!ENTITY e '" + std::string(4000, 'x') + "'>]>";
    const long before = peakMegabytes();
    expectRefused(head + "<a>" + references + "</a>");
    expectRefused(head + "<a k='" + references + "'/>");
    EXPECT_LT(peakMegabytes() - before, 300);
}

TEST_F(Hostile, DefaultAttributesAreBounded)
{
    const int count = 2000;
    for (const size_t length : {1u, 50u}) {
        std::string text = "<!DOCTYPE a [";
        for (int i = 0; i < count; ++i)
            text += "<!ATTLIST a x" + std::to_string(i) + " CDATA '" + std::string(length, 'v') + "'>";
        text += "]><a>";
        for (int i = 0; i < count; ++i)
            text += "<a/>";
        const long before = peakMegabytes();
        expectRefused(text + "</a>");
        EXPECT_LT(peakMegabytes() - before, 300);
    }
}

TEST_F(Hostile, EntitiesThatNameThemselvesAreRefused)
{
    expectRefused("<!DOCTYPE a [<!ENTITY x '&y;'><!ENTITY y '&x;'>]><a>&x;</a>");
    expectRefused("<!DOCTYPE a [<!ENTITY x '&x;'>]><a k='&x;'/>");
}

TEST_F(Hostile, UnknownEntityIsRefused)
{
    expectRefused("<a>&who;</a>");
    expectRefused("<a k='&who;'/>");
}

TEST_F(Hostile, OutsideEntityIsNotFetched)
{
    EXPECT_EQ(doc.ParseDocument("<!DOCTYPE a [<!ENTITY f SYSTEM 'file:///etc/passwd'>]><a>&f;</a>"), 1);
    EXPECT_EQ(body().find("root:"), std::string::npos);
}

TEST_F(Hostile, TooManyAttributesOfOneElementAreRefusedAtOnce)
{
    const auto element = [](int attributes) {
        std::string text = "<a";
        for (int i = 0; i < attributes; ++i)
            text += " x" + std::to_string(i) + "=''";
        return text + "/>";
    };
    EXPECT_EQ(doc.ParseDocument(element(4000).c_str()), 1);
    expectRefused(element(4097));
    expectRefused("<l>" + element(1000000) + "</l>");
}

TEST_F(Hostile, ManyQuotesInTextAreNoAttributes)
{
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "say \"x\" ";
    EXPECT_EQ(doc.ParseDocument(("<a>" + text + "</a>").c_str()), 1);
    EXPECT_EQ(doc.ParseDocument(("<a><![CDATA[" + text + "]]></a>").c_str()), 1);
    EXPECT_EQ(doc.ParseDocument(("<a k='" + std::string(100000, '"') + "'/>").c_str()), 1);
}

TEST_F(Hostile, SameAttributeTwiceIsRefused)
{
    expectRefused("<a k='1' k='2'/>");
}

TEST_F(Hostile, NulsAreRefused)
{
    expectRefused(std::string("<a>x\0y</a>", 10));
    expectRefused(std::string("<a k='x\0y'/>", 12));
    expectRefused(std::string("\0<a/>", 5));
    expectRefused(std::string("<a/>\0", 5));
    expectRefused(std::string(1000, '\0'));
    expectRefused("<a>&#0;</a>");
    expectRefused(std::string("<l><i/><a k\0='1'/></l>", 22));
    EXPECT_EQ(body(), "<l>\n    <i/>\n</l>\n");
    const char wide[] = "\xff\xfe<\0a\0 \0k\0\0\0=\0'\0'\0/\0>\0";
    expectRefused(std::string(wide, sizeof(wide) - 1));
    const char inDocType[] = "<!DOCTYPE a [<!ATTLIST a d\0 CDATA 'v'>]><a/>";
    expectRefused(std::string(inDocType, sizeof(inDocType) - 1));
}

TEST_F(Hostile, ControlLettersAreRefused)
{
    expectRefused("<a>\x01</a>");
    expectRefused("<a>&#1;</a>");
    expectRefused("<a>\xef\xbf\xbf</a>");
}

TEST_F(Hostile, BytesThatAreNoUtf8AreRefusedAndWhatCameBeforeStays)
{
    for (const char* bytes : {"\xff", "\xc0\x80", "\xed\xa0\x80", "\xe2\x28\xa1"}) {
        expectRefused(std::string("<l>\n<a k='1'/>\n<b>") + bytes + "</b></l>");
        EXPECT_EQ(body().substr(0, 21), "<l>\n    <a k=\"1\"/>\n  ");
        EXPECT_EQ(doc.GetErrorLine(), 3);
        EXPECT_STREQ(doc.GetErrorText(), "The text is not UTF-8.");
    }
}

TEST_F(Hostile, UnknownEncodingIsRefused)
{
    expectRefused("<?xml version='1.0' encoding='klingon'?><a/>");
}

TEST_F(Hostile, AttributeOfFiftyMegabytesIsRead)
{
    const std::string value(50u << 20, 'v');
    EXPECT_EQ(doc.ParseDocument(("<a k='" + value + "'/>").c_str()), 1);
    EXPECT_EQ(doc.GetRootElement()->GetAttributeValue("k").GetLength(), int(value.size()));
    EXPECT_GT(doc.ExportToText().GetLength(), int(value.size()));
}

TEST_F(Hostile, DocumentBeyondTheLimitIsRefused)
{
    expectRefused("<a>" + std::string(XML_TEXT_LIMIT, 'v') + "</a>");
    EXPECT_EQ(doc.GetFirstChild(), nullptr);
}

TEST_F(Hostile, LongNamesAreReadOrRefused)
{
    EXPECT_EQ(doc.ParseDocument(("<" + std::string(1000, 'n') + "/>").c_str()), 1);
    doc.ParseDocument(("<" + std::string(1000000, 'n') + "/>").c_str());
    doc.ParseDocument(("<a " + std::string(1000000, 'n') + "='1'/>").c_str());
}

TEST_F(Hostile, MillionNodesOfEveryKindAreRead)
{
    std::string text = "<a>";
    for (int i = 0; i < 200000; ++i)
        text += "<b/>t<!--c--><![CDATA[d]]><?e f?>";
    EXPECT_EQ(doc.ParseDocument((text + "</a>").c_str()), 1);
    int count = 0;
    for (const xmlBaseNode* node = doc.GetRootElement()->GetFirstChild(); node; node = node->GetNext())
        ++count;
    EXPECT_EQ(count, 1000000);
}

} // namespace
