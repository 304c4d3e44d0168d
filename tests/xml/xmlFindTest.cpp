#include "support/xml/xmlFile.h"

#include <gtest/gtest.h>

namespace {

class Find : public testing::Test
{
protected:
    void parse(const char* text) { ASSERT_EQ(doc.ParseDocument(text), 1) << doc.GetErrorText(); }
    const char* id(xmlElement* element) const
    {
        return element ? element->GetAttributeValue("id").GetText() : "(null)";
    }

    xmlDocument doc;
};

TEST_F(Find, FromRootWalksDownTheFirstElementOfEachName)
{
    parse("<a><x/><b id='1'><c id='2'/></b><b id='3'><c id='4'/></b></a>");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", "b", "c", 0)), "2");
    EXPECT_STREQ(id(xmlFindElementFromRoot(doc.GetRootElement(), "b", 0)), "1");
}

TEST_F(Find, FromRootWithAMissingFirstNameIsNull)
{
    parse("<x><b/></x>");
    EXPECT_EQ(xmlFindElementFromRoot(&doc, "a", "b", 0), nullptr);
}

TEST_F(Find, FromRootDoesNotGoBackToAnotherElementOfTheName)
{
    parse("<a><b/><b><c/></b></a>");
    EXPECT_EQ(xmlFindElementFromRoot(&doc, "a", "b", "c", 0), nullptr);
}

TEST_F(Find, FromRootTakesEveryKindOfListEnd)
{
    parse("<a id='1'><b id='2'/></a>");
    const char* end = nullptr;
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", 0)), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", NULL)), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", nullptr)), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", 0L)), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", end)), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", "")), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a", 0, "b", 0)), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, "a")), "1");
    EXPECT_STREQ(id(xmlFindElementFromRoot(&doc, chString("a"), "b", 0)), "2");
}

TEST_F(Find, FromRootWithoutANameOrANodeIsNull)
{
    parse("<a/>");
    EXPECT_EQ(xmlFindElementFromRoot(&doc, 0), nullptr);
    EXPECT_EQ(xmlFindElementFromRoot(&doc), nullptr);
    EXPECT_EQ(xmlFindElementFromRoot(nullptr, "a", 0), nullptr);
    EXPECT_EQ(xmlFindElementFromRoot(doc.GetRootElement(), 0), nullptr);
}

TEST_F(Find, NamesAreComparedWithCase)
{
    parse("<a><B/></a>");
    EXPECT_EQ(xmlFindElementFromRoot(&doc, "a", "b", 0), nullptr);
    EXPECT_EQ(doc.GetRootElement()->FindChildElement("b"), nullptr);
}

TEST_F(Find, ByNameSearchesTheWholeSubtreeInDocumentOrder)
{
    parse("<a><b><x id='1'/></b><x id='2'/></a>");
    EXPECT_STREQ(id(xmlFindElementByName(&doc, "x")), "1");
    EXPECT_EQ(xmlFindElementByName(&doc, "a"), doc.GetRootElement());
    EXPECT_EQ(xmlFindElementByName(&doc, "none"), nullptr);
    EXPECT_EQ(xmlFindElementByName(nullptr, "x"), nullptr);
}

TEST_F(Find, ByNameStaysBelowItsNode)
{
    parse("<a><b id='1'/><x id='2'/></a>");
    xmlElement* b = xmlFindElementByName(&doc, "b");
    EXPECT_EQ(xmlFindElementByName(b, "x"), nullptr);
    EXPECT_EQ(xmlFindElementByName(b, "b"), nullptr);
}

TEST_F(Find, ChildElementIsTheFirstDirectOne)
{
    parse("<a>text<!--b--><c><b id='0'/></c><b id='1'/><b id='2'/></a>");
    EXPECT_STREQ(id(doc.GetRootElement()->FindChildElement("b")), "1");
    EXPECT_EQ(doc.GetRootElement()->FindChildElement("none"), nullptr);
    EXPECT_EQ(doc.GetRootElement()->FindChildElement(nullptr), nullptr);
}

TEST_F(Find, ChildElementByAttributeIsTheFirstWithThatValue)
{
    parse("<a><b k='x' id='1'/><c k='y' id='2'/><b k='y' id='3'/><d/></a>");
    xmlElement* root = doc.GetRootElement();
    EXPECT_STREQ(id(root->FindChildElementByAttribute("k", "y")), "2");
    EXPECT_EQ(root->FindChildElementByAttribute("k", "z"), nullptr);
    EXPECT_EQ(root->FindChildElementByAttribute("none", "y"), nullptr);
    EXPECT_EQ(root->FindChildElementByAttribute("K", "y"), nullptr);
}

TEST_F(Find, AbsentAttributeDoesNotEqualTheEmptyValue)
{
    parse("<a><b/><b k='' id='2'/></a>");
    xmlElement* root = doc.GetRootElement();
    root->GetFirstChildElement()->GetAttributeValue("k");
    EXPECT_STREQ(id(root->FindChildElementByAttribute("k", "")), "2");
}

TEST_F(Find, NextElementSkipsTextAndComments)
{
    parse("<a>t<b/>u<!--c--><![CDATA[d]]><?p i?><c/>v</a>");
    xmlElement* b = doc.GetRootElement()->FindChildElement("b");
    xmlElement* c = xmlGetNextElement(b);
    ASSERT_NE(c, nullptr);
    EXPECT_STREQ(c->GetName(), "c");
    EXPECT_EQ(xmlGetNextElement(c), nullptr);
    EXPECT_EQ(xmlGetNextElement(nullptr), nullptr);
    EXPECT_EQ(xmlGetNextElement(&doc), nullptr);
}

TEST_F(Find, DataContentIsThatOfAFirstDataChildOnly)
{
    parse("<a><text><![CDATA[<b>x</b>]]></text><plain>x</plain><none/><mixed>x<![CDATA[y]]></mixed></a>");
    EXPECT_EQ(xmlGetDataContent(&doc, "a", "text", 0), "<b>x</b>");
    EXPECT_EQ(xmlGetDataContent(&doc, "a", "plain", 0), "");
    EXPECT_EQ(xmlGetDataContent(&doc, "a", "none", 0), "");
    EXPECT_EQ(xmlGetDataContent(&doc, "a", "mixed", 0), "");
    EXPECT_EQ(xmlGetDataContent(&doc, "a", "missing", 0), "");
    EXPECT_EQ(xmlGetDataContent(nullptr, "a", 0), "");
}

TEST_F(Find, TextContentIsThatOfAFirstTextChildOnly)
{
    parse("<a><text>x &amp; y</text><data><![CDATA[x]]></data><sub><c/>x</sub></a>");
    EXPECT_EQ(xmlGetTextContent(&doc, "a", "text", nullptr), "x & y");
    EXPECT_EQ(xmlGetTextContent(&doc, "a", "data", 0), "");
    EXPECT_EQ(xmlGetTextContent(&doc, "a", "sub", 0), "");
}

TEST_F(Find, ContentWithoutNamesIsThatOfTheNode)
{
    parse("<a>x</a>");
    EXPECT_EQ(xmlGetTextContent(doc.GetRootElement(), 0), "x");
    EXPECT_EQ(xmlGetTextContent(doc.GetRootElement(), ""), "x");
    EXPECT_EQ(xmlGetTextContent(doc.GetRootElement()), "x");
}

TEST_F(Find, DataBetweenLineEndsIsTheFirstChild)
{
    parse("<media>\n  <text>\n    <![CDATA[html]]>\n  </text>\n</media>");
    EXPECT_EQ(xmlGetDataContent(&doc, "media", "text", 0), "html");
}

TEST_F(Find, NodeKindsHaveTheirNumbers)
{
    EXPECT_EQ(int(xmlTypeText), 2);
    EXPECT_EQ(int(xmlTypeData), 5);
}

TEST_F(Find, ValueIsTheFirstTextOrDataChild)
{
    parse("<a><b>one</b><c><x/><![CDATA[two]]></c><d/></a>");
    chString value("before");
    EXPECT_EQ(PeekValue(xmlFindElementByName(&doc, "b"), value), 1);
    EXPECT_EQ(value, "one");
    EXPECT_EQ(PeekValue(xmlFindElementByName(&doc, "c"), value), 1);
    EXPECT_EQ(value, "two");
    EXPECT_EQ(PeekValue(xmlFindElementByName(&doc, "c")->GetLastChild(), value), 1);
    EXPECT_EQ(value, "two");
    EXPECT_EQ(PeekValue(xmlFindElementByName(&doc, "d"), value), 0);
    EXPECT_EQ(value, "");
    EXPECT_EQ(PeekValue(nullptr, value), 0);
    EXPECT_EQ(PeekValue(&doc, value), 0);
}

TEST_F(Find, SetValueWritesTheChildThatHoldsItOrMakesOne)
{
    parse("<a><b>one</b><c><![CDATA[two]]></c><d/></a>");
    for (const char* name : {"b", "c", "d"})
        EXPECT_EQ(SetValue(xmlFindElementByName(&doc, name), chString("1<2")), 1);
    EXPECT_STREQ(doc.ExportToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                     "<a>\n"
                                     "    <b>1&lt;2</b>\n"
                                     "    <c><![CDATA[1<2]]></c>\n"
                                     "    <d>1&lt;2</d>\n"
                                     "</a>\n");
    EXPECT_EQ(SetValue(nullptr, chString("x")), 0);
    EXPECT_EQ(SetValue(&doc, chString("x")), 0);
}

TEST_F(Find, ReferenceAndDocumentTypeHoldNoValueToPeekOrSet)
{
    parse("<!DOCTYPE a SYSTEM 'a.dtd'><a>&who;</a>");
    const chString before = doc.ExportToText();
    xmlBaseNode* reference = doc.GetRootElement()->GetFirstChild();
    chString value("before");
    EXPECT_EQ(PeekValue(reference, value), 0);
    EXPECT_EQ(value, "");
    EXPECT_EQ(SetValue(reference, chString("x")), 0);
    EXPECT_EQ(SetValue(doc.GetFirstChild(), chString("<!DOCTYPE b>")), 0);
    EXPECT_EQ(doc.ExportToText(), before);
}

TEST_F(Find, NamesMayBeginWithAColon)
{
    parse("<:a :k='1'><b:/><:/></:a>");
    xmlElement* element = xmlFindElementFromRoot(&doc, ":a", 0);
    ASSERT_NE(element, nullptr);
    EXPECT_STREQ(element->GetAttributeValue(":k"), "1");
    EXPECT_NE(element->FindChildElement("b:"), nullptr);
    element->AddChildElement("::c")->GetAttributeValue(":d:") = "2";
    EXPECT_STREQ(doc.ExportToText(),
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<:a :k=\"1\">\n    <b:/>\n    <:/>\n"
                 "    <::c :d:=\"2\"/>\n</:a>\n");
}

TEST_F(Find, ElementIsParsedFromText)
{
    xmlElement* element = xmlParseElementFromText("<item name='x'><sub/></item>");
    ASSERT_NE(element, nullptr);
    EXPECT_STREQ(element->GetAttributeValue("name"), "x");
    EXPECT_NE(element->FindChildElement("sub"), nullptr);
    xmlFreeElement(element);
    xmlFreeElement(nullptr);
}

TEST_F(Find, TextThatIsNoElementGivesNull)
{
    for (const char* text : {"", "text", "<a>", "<a></b>", "<!--c-->", "<a/>tail"})
        EXPECT_EQ(xmlParseElementFromText(text), nullptr) << text;
    EXPECT_EQ(xmlParseElementFromText(nullptr), nullptr);
}

TEST_F(Find, ParsedElementIsCopiedIntoADocument)
{
    parse("<list/>");
    xmlElement* element = xmlParseElementFromText("<item k='v'>t<sub><deep/></sub><!--c--></item>");
    doc.GetRootElement()->AddChildCopy(element);
    xmlFreeElement(element);
    EXPECT_STREQ(doc.ExportToText(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                     "<list>\n"
                                     "    <item k=\"v\">t<sub><deep/></sub><!--c--></item>\n"
                                     "</list>\n");
}

TEST_F(Find, FreeingAnElementOfADocumentRemovesItOnly)
{
    parse("<a><b/><c/></a>");
    xmlFreeElement(xmlFindElementByName(&doc, "b"));
    EXPECT_EQ(xmlFindElementByName(&doc, "b"), nullptr);
    EXPECT_NE(xmlFindElementByName(&doc, "c"), nullptr);
    xmlElement* fragment = xmlParseElementFromText("<a><b/></a>");
    xmlFreeElement(fragment->FindChildElement("b"));
    EXPECT_EQ(fragment->GetFirstChild(), nullptr);
    xmlFreeElement(fragment);
}

} // namespace
