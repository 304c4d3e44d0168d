#include "support/xml/xmlFile.h"
#include "tests/file/freshRoot.h"
#include "tests/xml/hostileDocuments.h"

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
    void expectRefusedAt(const std::string& text, int line, int column)
    {
        expectRefused(text);
        EXPECT_EQ(doc.GetErrorLine(), line) << doc.GetErrorText();
        EXPECT_EQ(doc.GetErrorColumn(), column) << doc.GetErrorText();
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
    expectRefusedAt("<l><a>1</a><b>2</b><c>the text that was cut", 1, 44);
    EXPECT_EQ(body(), "<l>\n    <a>1</a>\n    <b>2</b>\n    <c>the text that was cut</c>\n</l>\n");
}

// What blank text means is known where an element ends, also where the text ends first.
TEST_F(Hostile, BlanksOfElementsThatAreOpenAtTheEndOfTruncatedTextAreThoseOfClosedOnes)
{
    expectRefused("<l>\n  <a/>\n  <b>\n    <c/>\n  ");
    const xmlElement* list = doc.GetRootElement();
    EXPECT_EQ(list->GetFirstChild(), list->FindChildElement("a"));
    EXPECT_EQ(list->GetLastChild(), list->FindChildElement("b"));
    EXPECT_EQ(list->GetFirstChild()->GetNext(), list->GetLastChild());
    EXPECT_EQ(list->GetLastChild()->GetFirstChild(), list->GetLastChild()->GetLastChild());
    EXPECT_STREQ(list->GetLastChild()->GetFirstChild()->GetName(), "c");
    expectRefused("<l>x <b>y</b> <c>  ");
    EXPECT_EQ(body(), "<l>x <b>y</b> <c>  </c></l>\n");
}

TEST_F(Hostile, PlaceOfEveryErrorIsTold)
{
    expectRefusedAt("", 1, 1);
    expectRefusedAt("<a>\n</b>", 2, 3);
    expectRefusedAt("<a>\r\n\r\xc3\xa9&who;</a>", 3, 2);
    expectRefusedAt("\xef\xbb\xbf<a>\xff</a>", 1, 4);
    expectRefusedAt(std::string("<a>\n \0</a>", 10), 2, 2);
    expectRefusedAt("<?xml version='1.0' encoding='klingon'?><a/>", 1, 31);
    expectRefusedAt("<?xml version='2.0'?>\n<a/>", 1, 1);
    expectRefusedAt("<a/>\n<b/>\n  text", 3, 1);
    expectRefusedAt("<a/>\n<b/> <c></d>", 2, 11);
    expectRefusedAt("<a/>\n<b/>\n<c>", 3, 4);
    expectRefusedAt("<a/><b/>&#32;", 1, 9);
    expectRefusedAt(hostile::widened("<a>\n<b></c>"), 2, 6);
    expectRefusedAt("<?xml version='1.0' encoding='ISO-8859-1'?>\n<a>\xe9\xe9</b>", 2, 8);
    expectRefusedAt("<?xml version='1.0' encoding='Shift_JIS'?>\n<a>\x83\x65\x83</a>", 2, 5);
    expectRefusedAt(hostile::widened("<l>\n<i/>") + std::string("\0\xd8<\0", 4), 2, 5);
    EXPECT_EQ(body(), "<l>\n    <i/>\n</l>\n");
}

TEST_F(Hostile, PlaceOfWhatIsBeyondALimitIsTold)
{
    expectRefusedAt(hostile::repeated("<a>\n", XML_DEPTH_LIMIT + 1), XML_DEPTH_LIMIT + 1, 1);
    expectRefusedAt("<b/>\n" + hostile::repeated("<a>\n", XML_DEPTH_LIMIT + 1), XML_DEPTH_LIMIT + 2, 1);
    expectRefusedAt(hostile::filled(100000, "<l>\n <i/>\n  <a", hostile::counted(" x", "=''"), "/></l>"), 3,
                    3);
    EXPECT_NE(xmlFindElementFromRoot(&doc, "l", "i", 0), nullptr);
    expectRefusedAt(hostile::laughs("lol") + "\n<l>\n<i/>\n &l9;</l>", 4, 2);
    EXPECT_NE(xmlFindElementFromRoot(&doc, "l", "i", 0), nullptr);
    expectRefusedAt("<a>\n<b/>" + std::string(XML_TEXT_LIMIT, ' ') + "</a>", 2, XML_TEXT_LIMIT - 3);
    EXPECT_NE(xmlFindElementFromRoot(&doc, "a", "b", 0), nullptr);
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
    const std::string docType =
        "<!DOCTYPE a SYSTEM 'file:///etc/passwd' [<!ENTITY f SYSTEM 'file:///etc/passwd'>"
        "<!ENTITY % p SYSTEM 'file:///etc/passwd'>%p;]>";
    EXPECT_EQ(doc.ParseDocument((docType + "<a>&f;</a>").c_str()), 1);
    const xmlBaseNode* reference = doc.GetRootElement()->GetFirstChild();
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->GetType(), xmlTypeEntity);
    EXPECT_STREQ(reference->GetName(), "f");
    EXPECT_EQ(reference->GetNext(), nullptr);
    EXPECT_EQ(body(), docType + "\n<a>&f;</a>\n");
}

// The lists of a DTD, entities, names and nodes: none of them costs much more than a document of the same
// size that the phone itself would write.
TEST_F(Hostile, NoDocumentTakesMuchLongerThanAnother)
{
    const size_t size = 1024 * 1024;
    const auto timeOf = [this](const std::string& text) {
        const auto now = [] {
            struct timespec time;
            clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
            return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
        };
        double best = 1e9;
        for (int i = 0; i < 3; ++i) {
            const double start = now();
            doc.ParseDocument(text.data(), int(text.size()));
            doc.ClearDocument();
            best = std::min(best, now() - start);
        }
        return best;
    };
    const hostile::Piece record =
        hostile::counted("<contact name=\"Person ", "\" line=\"1\"><note>Desk 1</note></contact>\n");
    const double usual = timeOf(hostile::filled(size, "<l>\n", record, "</l>\n"));
    for (const hostileDocument& document : hostileDocuments(size))
        EXPECT_LT(timeOf(document.text) / usual, 15) << document.name;
}

TEST_F(Hostile, EntitiesThatLieInEachOtherAreBounded)
{
    const auto chain = [](int length, const char* mark) {
        std::string text = std::string("<!DOCTYPE l [<!ENTITY ") + mark + " e0 ''>";
        for (int i = 1; i <= length; ++i)
            text += std::string("<!ENTITY ") + mark + " e" + std::to_string(i) + " '" +
                    (*mark ? "&#37;e" : "&e") + std::to_string(i - 1) + ";'>";
        const std::string last = "e" + std::to_string(length) + ";";
        return *mark ? text + "%" + last + "]><l/>" : text + "]><l>&" + last + "</l>";
    };
    for (const char* mark : {"", "%"}) {
        EXPECT_EQ(doc.ParseDocument(chain(1000, mark).c_str()), 1) << doc.GetErrorText();
        expectRefused(chain(1100, mark));
        EXPECT_STREQ(doc.GetErrorText(), "Too many entities stand for other entities.");
        expectRefused(chain(100000, mark));
    }
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
    EXPECT_EQ(doc.ParseDocument(("<a><![CDATA[<p " + text + "]]></a>").c_str()), 1);
    EXPECT_EQ(doc.ParseDocument(("<a><!-- <p " + text + "--></a>").c_str()), 1);
    EXPECT_EQ(doc.ParseDocument(("<a><?p <p " + text + "?></a>").c_str()), 1);
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
    for (const char* bytes : {"\xff", "\xc0\x80", "\xed\xa0\x80", "\xe2\x28\xa1", "\xf0\x80\x80\x80",
                              "\xf0\x8f\xbf\xbd", "\xf4\x90\x80\x80"}) {
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
    EXPECT_STREQ(doc.GetErrorText(), "The document is too large.");
    EXPECT_EQ(doc.ParseDocument(("<a>" + std::string(XML_TEXT_LIMIT - 7, 'v') + "</a>").c_str()), 1);
    expectRefused("<a>" + std::string(XML_TEXT_LIMIT - 7, 'v') + "</a> ");
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
