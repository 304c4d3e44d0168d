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
    const std::string docType =
        "<!DOCTYPE a [\n  <!ENTITY me 'you &amp; I'>\n  <!ENTITY both \"&me; &lt;&#38;#60;\">\n"
        "  <!ENTITY b '<b>x</b>'>\n]  >";
    EXPECT_EQ(exported((docType + "<a b='&both;'>&both;&#x41;&#66;&b;&quot;</a>").c_str()),
              docType + "\n<a b=\"you &amp; I &lt;&lt;\">you &amp; I &lt;&lt;AB<b>x</b>\"</a>\n");
}

TEST(RoundTrip, DocTypeStaysByteForByte)
{
    const std::string docType =
        "<!DOCTYPE\ta PUBLIC \"-//X//Y\" 'y.dtd'\n[ <!-- > ]> -->\r\n<?p ]> ?><!ELEMENT a ANY>"
        "<!ATTLIST a k (x|y) 'x'><!NOTATION n SYSTEM 'n'><!ENTITY % p '<!ENTITY q \"Q\">'>%p;"
        "<!ENTITY u SYSTEM 'u' NDATA n>\t] >";
    EXPECT_EQ(exported(("<?xml version='1.0'?><!-- <!DOCTYPE b> --><?b <!DOCTYPE b>?>\n" + docType +
                        "\n<!-- c --><a>&q;</a>")
                           .c_str()),
              "<!-- <!DOCTYPE b> -->\n<?b <!DOCTYPE b>?>\n" + docType + "\n<!-- c -->\n<a>Q</a>\n");
}

TEST(RoundTrip, DeclaredValueIsThereAndNotWrittenUntilItIsChanged)
{
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument("<!DOCTYPE a [<!ATTLIST a k CDATA 'v' l CDATA 'w'>]><a l='x'/>"), 1);
    EXPECT_STREQ(doc.GetRootElement()->GetAttributeValue("k"), "v");
    EXPECT_EQ(exported(doc.ExportToText()),
              "<!DOCTYPE a [<!ATTLIST a k CDATA 'v' l CDATA 'w'>]>\n<a l=\"x\"/>\n");
    doc.GetRootElement()->GetAttributeValue("k") = "";
    EXPECT_EQ(exported(doc.ExportToText()),
              "<!DOCTYPE a [<!ATTLIST a k CDATA 'v' l CDATA 'w'>]>\n<a l=\"x\" k=\"\"/>\n");
}

TEST(RoundTrip, ReferenceToAnOutsideEntityStays)
{
    EXPECT_EQ(exported("<!DOCTYPE a SYSTEM 'a.dtd'><a>x &who; y</a>"),
              "<!DOCTYPE a SYSTEM 'a.dtd'>\n<a>x &who; y</a>\n");
    const std::string docType = "<!DOCTYPE a [<!ENTITY who SYSTEM 'who'><!ENTITY me 'I and &who;'>]>\n";
    EXPECT_EQ(exported((docType + "<a>&who;<b> &me;</b> </a>").c_str()),
              docType + "<a>&who;<b> I and &who;</b> </a>\n");
}

TEST(RoundTrip, ReferenceToAnOutsideEntityStaysInAnAttribute)
{
    const std::string docType = "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY me '\"I\" &amp; &who;'>]>";
    const std::string text = docType + "\n<a i=\"&lt;\" k=\"x\n&who; &me;&#9;>\" l='\"&who;\"'/>\n";
    EXPECT_EQ(exported(text.c_str()), text);
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument(text.c_str()), 1);
    xmlElement* element = doc.GetRootElement();
    EXPECT_STREQ(element->GetAttributeValue("i"), "<");
    EXPECT_STREQ(element->GetAttributeValue("k"), "x &who; \"I\" & &who;\t>");
    EXPECT_STREQ(element->GetAttributeValue("l"), "\"&who;\"");
    element->GetAttributeValue("k") = "new &who;";
    EXPECT_EQ(exported(doc.ExportToText()),
              docType + "\n<a i=\"&lt;\" k=\"new &amp;who;\" l='\"&who;\"'/>\n");
}

TEST(RoundTrip, ReferenceThatWouldBeLostIsRefused)
{
    xmlDocument doc;
    EXPECT_EQ(doc.ParseDocument("<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e \"<b k='&who;'/>\">]>\n<a>&e;</a>"),
              0);
    EXPECT_EQ(
        doc.ParseDocument("<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e \"<b k='&lt;'>&who;</b>\">]>\n<a>&e;</a>"),
        1);
    EXPECT_EQ(doc.ParseDocument("<!DOCTYPE a [<!ENTITY f SYSTEM 'f'>]><a k='&f;'/>"), 0);
}

TEST(RoundTrip, DocumentOfItsOwnStaysSo)
{
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument("<?xml version='1.0' standalone='yes'?><a/>"), 1);
    EXPECT_STREQ(doc.ExportToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<a/>\n");
    ASSERT_EQ(doc.ParseDocument("<?xml version='1.0' standalone='no'?><a/>"), 1);
    EXPECT_STREQ(doc.ExportToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n<a/>\n");
    ASSERT_EQ(doc.ParseDocument("<a/>"), 1);
    EXPECT_STREQ(doc.ExportToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>\n");
}

TEST(RoundTrip, OtherEncodingsAreReadAndUtf8IsWritten)
{
    EXPECT_EQ(exported("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xe9</a>"), "<a>\xc3\xa9</a>\n");
    EXPECT_EQ(exported("<?xml version='1.0' encoding='windows-1252'?><a>\x80</a>"), "<a>\xe2\x82\xac</a>\n");
    EXPECT_EQ(exported("<?xml version='1.0' encoding='Shift_JIS'?><a b='\x83\x65'/>"),
              "<a b=\"\xe3\x83\x86\"/>\n");
    EXPECT_EQ(exported("<?xml version='1.0' encoding='US-ASCII'?><a>&#233;</a>"), "<a>\xc3\xa9</a>\n");
    EXPECT_EQ(exported("<?xml version='1.0' encoding='Utf-8'?><a>\xc3\xa9</a>"), "<a>\xc3\xa9</a>\n");
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
