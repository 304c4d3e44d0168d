#include "support/xml/xmlFile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string START = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string exported(const char* text)
{
    xmlDocument doc;
    EXPECT_EQ(doc.ParseDocument(text), 1) << text << ": " << doc.GetErrorText();
    const std::string once = doc.ExportToText().GetText();
    xmlDocument again;
    EXPECT_EQ(again.ParseDocument(once.c_str()), 1) << once;
    EXPECT_EQ(once, again.ExportToText().GetText());
    EXPECT_EQ(once.compare(0, START.size(), START), 0);
    return once.substr(START.size());
}

TEST(RoundTrip, KeepsWhatNobodyAskedAbout)
{
    EXPECT_EQ(exported("<!-- top --><?style x=\"y\"?>\n<a z='1' b='2' a='3'><!-- in --><x:y q='r'/>"
                       "<?pi?><t>1<b>2</b>3<![CDATA[<4>]]></t></a><!-- end -->"),
              "<!-- top -->\n<?style x=\"y\"?>\n<a z=\"1\" b=\"2\" a=\"3\">\n    <!-- in -->\n"
              "    <x:y q=\"r\"/>\n    <?pi?>\n    <t>1<b>2</b>3<![CDATA[<4>]]></t>\n</a>\n<!-- end -->\n");
}

TEST(RoundTrip, LinesAreIndentedAnew)
{
    EXPECT_EQ(exported("<a>\n\n<b>\n<c/></b>\t</a>"), "<a>\n    <b>\n        <c/>\n    </b>\n</a>\n");
}

TEST(RoundTrip, BlanksOfMixedContentStay)
{
    EXPECT_EQ(exported("<p> <b>x</b> <i> <u/> </i> and </p>"), "<p> <b>x</b> <i><u/></i> and </p>\n");
}

TEST(RoundTrip, BlankTextThatStandsAloneStays)
{
    EXPECT_EQ(exported("<a><b>  </b><c>\n</c></a>"), "<a>\n    <b>  </b>\n    <c>\n</c>\n</a>\n");
}

TEST(RoundTrip, EmptyElementsAreOneTag)
{
    EXPECT_EQ(exported("<a><b></b></a>"), "<a>\n    <b/>\n</a>\n");
}

TEST(RoundTrip, EmptyDataStays)
{
    EXPECT_EQ(exported("<a><![CDATA[]]></a>"), "<a><![CDATA[]]></a>\n");
}

TEST(RoundTrip, BlankTextBetweenDataStays)
{
    EXPECT_EQ(exported("<a> <![CDATA[x]]> \n<![CDATA[y]]> <b/></a>"),
              "<a><![CDATA[x]]> \n<![CDATA[y]]><b/></a>\n");
}

TEST(RoundTrip, NeighbouringDataIsOne)
{
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument("<a><![CDATA[x]]]]><![CDATA[>y]]></a>"), 1);
    EXPECT_EQ(xmlGetDataContent(&doc, "a", 0), "x]]>y");
    EXPECT_EQ(doc.GetRootElement()->GetFirstChild()->GetNext(), nullptr);
}

TEST(RoundTrip, EntitiesAreResolvedAndTheirDeclarationStays)
{
    EXPECT_EQ(exported("<!DOCTYPE a [<!ENTITY me 'you &amp; I'>]><a b='&me;'>&me;&#x41;&#66;</a>"),
              "<!DOCTYPE a [<!ENTITY me 'you &amp; I'>]>\n<a b=\"you &amp; I\">you &amp; IAB</a>\n");
}

TEST(RoundTrip, ReferenceToAnOutsideEntityStays)
{
    EXPECT_EQ(exported("<!DOCTYPE a SYSTEM 'a.dtd'><a>x &who; y</a>"),
              "<!DOCTYPE a SYSTEM 'a.dtd'>\n<a>x &who; y</a>\n");
}

TEST(RoundTrip, DocumentOfItsOwnStaysSo)
{
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument("<?xml version='1.0' standalone='yes'?><a/>"), 1);
    EXPECT_STREQ(doc.ExportToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<a/>\n");
}

TEST(RoundTrip, OtherEncodingsAreReadAndUtf8IsWritten)
{
    EXPECT_EQ(exported("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xe9</a>"), "<a>\xc3\xa9</a>\n");
    EXPECT_EQ(exported("\xef\xbb\xbf<a>\xc3\xa9</a>"), "<a>\xc3\xa9</a>\n");
    const char wide[] = "\xff\xfe<\0a\0>\0\xe9\0<\0/\0a\0>\0";
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument(wide, sizeof(wide) - 1), 1);
    EXPECT_EQ(xmlGetTextContent(&doc, "a", 0), "\xc3\xa9");
}

TEST(RoundTrip, LettersBeyondTheFirstPlaneStay)
{
    EXPECT_EQ(exported("<a b='\xf0\x9f\x98\x80'>&#x1f600;\xe4\xb8\xad</a>"),
              "<a b=\"\xf0\x9f\x98\x80\">\xf0\x9f\x98\x80\xe4\xb8\xad</a>\n");
}

TEST(RoundTrip, LineEndsAreNormalOnesAndReferencesToThemStay)
{
    EXPECT_EQ(exported("<a b='x\r\ny&#10;z&#13;&#9;'>1\r\n2\r3&#13;4</a>"),
              "<a b=\"x y&#10;z&#13;&#9;\">1\n2\n3&#13;4</a>\n");
}

TEST(RoundTrip, SeveralElementsAtDocumentLevelStay)
{
    EXPECT_EQ(exported("<?xml version=\"1.0\"?>\n<ImageView><time/></ImageView>\n<!--c-->\n<VideoView/>\n"),
              "<ImageView>\n    <time/>\n</ImageView>\n<!--c-->\n<VideoView/>\n");
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument("<ImageView/><VideoView><time/></VideoView>"), 1);
    EXPECT_NE(xmlFindElementFromRoot(&doc, "VideoView", "time", 0), nullptr);
}

TEST(RoundTrip, OneElementOfOneLetterIsADocument)
{
    EXPECT_EQ(exported("<a/>"), "<a/>\n");
    EXPECT_EQ(exported(" \n <a/> \n "), "<a/>\n");
}

TEST(RoundTrip, LengthEndsTheText)
{
    xmlDocument doc;
    EXPECT_EQ(doc.ParseDocument("<a/><b></c>", 4), 1);
    EXPECT_EQ(doc.ParseDocument("<a/>", 0), 0);
    EXPECT_EQ(doc.ParseDocument("<a/>", -2), 0);
}

TEST(RoundTrip, EmptyDocumentIsItsDeclaration)
{
    xmlDocument doc;
    EXPECT_STREQ(doc.ExportToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

} // namespace
