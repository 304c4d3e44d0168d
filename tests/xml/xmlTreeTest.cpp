#include "support/xml/xmlFile.h"
#include "support/xml/xmlTextNode.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const char START[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

class Tree : public testing::Test
{
protected:
    std::string body() const
    {
        const std::string text = doc.ExportToText().GetText();
        EXPECT_EQ(text.compare(0, strlen(START), START), 0);
        return text.substr(strlen(START));
    }
    // Saved and read again it is the same document.
    void expectReadBack() const
    {
        xmlDocument again;
        EXPECT_EQ(again.ParseDocument(doc.ExportToText()), 1) << again.GetErrorText() << body();
        EXPECT_EQ(again.ExportToText(), doc.ExportToText());
    }

    xmlDocument doc;
};

TEST_F(Tree, IsBuiltOfElementsAndAttributes)
{
    xmlElement* list = doc.AddChildElement("list");
    for (const char* number : {"1", "2"})
        list->AddChildElement("item")->GetAttributeValue("n") = number;
    EXPECT_EQ(body(), "<list>\n    <item n=\"1\"/>\n    <item n=\"2\"/>\n</list>\n");
    expectReadBack();
}

TEST_F(Tree, HoldsEveryKindOfNode)
{
    doc.AddChildXMLNode(xmlTypeComment, "top");
    doc.AddChildXMLNode(xmlTypeDocType, "a");
    xmlElement* a = doc.AddChildElement("a");
    a->AddChildXMLNode(xmlTypeElement, "b")->AddChildXMLNode(xmlTypeText, "t<t");
    a->AddChildXMLNode(xmlTypeComment, "c");
    SetValue(a->AddChildXMLNode(xmlTypeInstruction, "pi"), chString("do it"));
    a->FindChildElement("b")->AddChildXMLNode(xmlTypeData, "d<d");
    EXPECT_EQ(body(), "<!--top-->\n<!DOCTYPE a>\n<a>\n    <b>t&lt;t<![CDATA[d<d]]></b>\n    <!--c-->\n"
                      "    <?pi do it?>\n</a>\n");
    expectReadBack();
}

TEST_F(Tree, NodesKnowWhatTheyAre)
{
    ASSERT_EQ(doc.ParseDocument("<a>t<![CDATA[d]]><!--c--><?p i?></a>"), 1);
    xmlElement* a = doc.GetRootElement();
    const xmlType types[] = {xmlTypeText, xmlTypeData, xmlTypeComment, xmlTypeInstruction};
    const char* texts[] = {"t", "d", "c", "i"};
    xmlBaseNode* node = a->GetFirstChild();
    for (int i = 0; i < 4; ++i, node = node->GetNext()) {
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->GetType(), types[i]);
        EXPECT_STREQ(node->GetText(), texts[i]);
        EXPECT_EQ(node->GetParent(), a);
        EXPECT_EQ(node->ToElement(), nullptr);
        EXPECT_EQ(node->GetDocument(), &doc);
    }
    EXPECT_EQ(node, nullptr);
    EXPECT_STREQ(a->GetLastChild()->GetName(), "p");
    EXPECT_EQ(a->GetLastChild()->GetPrev()->GetType(), xmlTypeComment);
    EXPECT_EQ(a->GetType(), xmlTypeElement);
    EXPECT_EQ(doc.GetType(), xmlTypeDocument);
    EXPECT_STREQ(a->GetText(), "");
    EXPECT_STREQ(doc.GetName(), "");
}

TEST_F(Tree, NodesThatCannotStandSomewhereAreRefused)
{
    EXPECT_EQ(doc.AddChildXMLNode(xmlTypeText, "x"), nullptr);
    EXPECT_EQ(doc.AddChildXMLNode(xmlTypeData, "x"), nullptr);
    EXPECT_EQ(doc.AddChildXMLNode(xmlTypeDocument, "x"), nullptr);
    EXPECT_EQ(doc.AddChildXMLNode(xmlTypeEntity, "x"), nullptr);
    EXPECT_NE(doc.AddChildXMLNode(xmlTypeDocType, "a"), nullptr);
    EXPECT_EQ(doc.AddChildXMLNode(xmlTypeDocType, "a"), nullptr);
    xmlElement* a = doc.AddChildElement("a");
    EXPECT_EQ(a->AddChildXMLNode(xmlTypeDocType, "a"), nullptr);
    xmlBaseNode* text = a->AddChildXMLNode(xmlTypeText, "x");
    EXPECT_EQ(text->AddChildElement("b"), nullptr);
    EXPECT_EQ(text->AddChildXMLNode(xmlTypeText, "b"), nullptr);
    EXPECT_EQ(a->AddChildCopy(nullptr), nullptr);
    EXPECT_EQ(a->AddChildCopy(&doc), nullptr);
}

TEST_F(Tree, ContentThatWouldEndItsNodeIsSpelledDifferently)
{
    xmlElement* a = doc.AddChildElement("a");
    a->AddChildXMLNode(xmlTypeComment, "--x---");
    a->AddChildXMLNode(xmlTypeData, "]]>]]]]>");
    SetValue(a->AddChildXMLNode(xmlTypeInstruction, "XML"), chString(" ?>?"));
    a->AddChildXMLNode(xmlTypeText, "]]>");
    EXPECT_EQ(body(),
              "<a><!--- -x- - - --><![CDATA[]]]]><![CDATA[>]]]]]]><![CDATA[>]]><?_XML ? >?\?>]]&gt;</a>\n");
    expectReadBack();
    chString value;
    EXPECT_EQ(PeekValue(a, value), 1);
    EXPECT_EQ(value, "]]>]]]]>");
}

TEST_F(Tree, LineEndsOfEveryKindAreReadBackAsTheyWere)
{
    SetValue(doc.AddChildElement("a"), chString("x\r\ny\rz\n"));
    xmlDocument again;
    ASSERT_EQ(again.ParseDocument(doc.ExportToText()), 1);
    EXPECT_EQ(xmlGetTextContent(&again, "a", 0), "x\r\ny\rz\n");
    doc.ClearDocument();
    doc.AddChildElement("a")->AddChildXMLNode(xmlTypeData, "x\r\ny\rz");
    expectReadBack();
}

TEST_F(Tree, ElementNamesThatXmlDoesNotAllowAreRepaired)
{
    for (const char* name :
         {"a b", "", "1", "a:b", ":a", "a:", "a:b:c", "<x>", "\xc3\xa9", "\xff", "-a", "a-b.c"})
        EXPECT_NE(doc.AddChildElement(name), nullptr);
    doc.AddChildElement(std::string(100000, 'n').c_str());
    expectReadBack();
    EXPECT_EQ(
        body().substr(0, body().find("<nnn")),
        "<a_b/>\n<_/>\n<_/>\n<a:b/>\n<:a/>\n<a:/>\n<a:b:c/>\n<_x_/>\n<\xc3\xa9/>\n<_/>\n<_a/>\n<a-b.c/>\n");
}

TEST_F(Tree, NameOfALetterThatTheReaderDoesNotTakeIsRepaired)
{
    const char* ideograph = "\xe5\x9b\xbe";
    const char* unknown = "\xdf\x94"; // a letter, but of a script that came after XML
    doc.AddChildElement(ideograph);
    xmlElement* element = doc.AddChildElement(unknown);
    element->AddChildXMLNode(xmlTypeInstruction, unknown);
    element->GetAttributeValue(unknown) = "v";
    expectReadBack();
    EXPECT_EQ(body(), "<\xe5\x9b\xbe/>\n<__ __=\"v\">\n    <?__?>\n</__>\n");
}

TEST_F(Tree, ClearedListTakesNewRecords)
{
    ASSERT_EQ(doc.ParseDocument("<l><i n='1'><s/></i><!--c--><i n='2'/></l>"), 1);
    xmlElement* list = doc.GetRootElement();
    list->ClearChildren();
    EXPECT_EQ(list->GetFirstChild(), nullptr);
    EXPECT_EQ(list->GetLastChild(), nullptr);
    list->AddChildElement("i")->GetAttributeValue("n") = "3";
    EXPECT_EQ(body(), "<l>\n    <i n=\"3\"/>\n</l>\n");
}

TEST_F(Tree, ListThatIsRewrittenForEverTakesNoMoreMemory)
{
    xmlElement* list = doc.AddChildElement("l");
    const xmlBaseNode* first = nullptr;
    for (int round = 0; round < 1000; ++round) {
        list->ClearChildren();
        for (int i = 0; i < 3; ++i)
            list->AddChildElement("i")->GetAttributeValue("n") = "a value of some length";
        if (round == 1)
            first = list->GetFirstChild();
    }
    // The nodes take turns in the same places.
    bool again = false;
    for (int round = 0; round < 4; ++round) {
        list->ClearChildren();
        for (int i = 0; i < 3; ++i)
            again = list->AddChildElement("i") == first || again;
    }
    EXPECT_TRUE(again);
}

TEST_F(Tree, ChildIsRemovedAnywhere)
{
    ASSERT_EQ(doc.ParseDocument("<l><a/><b><x/></b><c/></l>"), 1);
    xmlElement* list = doc.GetRootElement();
    xmlElement* inner = xmlFindElementByName(&doc, "x");
    EXPECT_EQ(list->RemoveChild(inner), 0);
    EXPECT_EQ(list->RemoveChild(nullptr), 0);
    EXPECT_EQ(list->RemoveChild(list->FindChildElement("b")), 1);
    EXPECT_EQ(body(), "<l>\n    <a/>\n    <c/>\n</l>\n");
    EXPECT_EQ(list->RemoveChild(list->FindChildElement("c")), 1);
    EXPECT_EQ(list->RemoveChild(list->FindChildElement("a")), 1);
    EXPECT_EQ(list->GetLastChild(), nullptr);
    EXPECT_EQ(body(), "<l/>\n");
}

TEST_F(Tree, ElementIsCopiedIntoItself)
{
    ASSERT_EQ(doc.ParseDocument("<a k='1'><b/></a>"), 1);
    xmlElement* a = doc.GetRootElement();
    EXPECT_NE(a->AddChildCopy(a), nullptr);
    EXPECT_EQ(body(), "<a k=\"1\">\n    <b/>\n    <a k=\"1\">\n        <b/>\n    </a>\n</a>\n");
}

TEST_F(Tree, CopyKeepsTheOrderAtEveryDepth)
{
    xmlDocument from;
    ASSERT_EQ(from.ParseDocument("<a><b><c/><d/></b><e/><f><g><h/></g></f></a>"), 1);
    EXPECT_NE(doc.AddChildCopy(from.GetRootElement()), nullptr);
    EXPECT_EQ(doc.ExportToText(), from.ExportToText());
}

TEST_F(Tree, UnknownEntityIsCopiedAsText)
{
    xmlDocument from;
    ASSERT_EQ(from.ParseDocument("<!DOCTYPE a SYSTEM 'a.dtd'><a>&who;</a>"), 1);
    EXPECT_NE(doc.AddChildCopy(from.GetRootElement()), nullptr);
    EXPECT_EQ(body(), "<a>&amp;who;</a>\n");
}

TEST_F(Tree, DeeperThanAnyStackIsClearedAndWritten)
{
    xmlBaseNode* node = &doc;
    for (int i = 0; i < 200000; ++i)
        node = node->AddChildElement("a");
    node->ToElement()->GetAttributeValue("k") = "v";
    xmlDocument copy;
    EXPECT_NE(copy.AddChildCopy(doc.GetRootElement()), nullptr);
    EXPECT_EQ(xmlFindElementByName(&copy, "b"), nullptr);
    const std::string written = body();
    std::string unindented;
    for (const char letter : written)
        if (letter != ' ' && letter != '\n')
            unindented += letter;
    std::string expected;
    for (int i = 0; i < 199999; ++i)
        expected += "<a>";
    expected += "<ak=\"v\"/>";
    for (int i = 0; i < 199999; ++i)
        expected += "</a>";
    EXPECT_TRUE(unindented == expected);
    doc.GetRootElement()->ClearChildren();
    EXPECT_EQ(body(), "<a/>\n");
}

TEST_F(Tree, ReferenceIsWrittenAsTextWhereItsDeclarationIsGone)
{
    ASSERT_EQ(
        doc.ParseDocument("<!DOCTYPE a SYSTEM 'a.dtd' [<!ATTLIST a d CDATA 'v'>]><a k='&who;'>&who;</a>"), 1);
    EXPECT_EQ(doc.RemoveChild(doc.GetFirstChild()), 1);
    EXPECT_EQ(body(), "<a k=\"&amp;who;\" d=\"v\">&amp;who;</a>\n");
    expectReadBack();
    doc.ClearDocument();
    ASSERT_EQ(doc.ParseDocument("<!DOCTYPE a SYSTEM 'a.dtd'><a>&who;</a>"), 1);
    xmlDocument other;
    other.AddChildXMLNode(xmlTypeDocType, "a");
    EXPECT_NE(other.AddChildCopy(doc.GetRootElement()), nullptr);
    EXPECT_NE(strstr(other.ExportToText(), "<a>&amp;who;</a>"), nullptr);
}

TEST_F(Tree, DocumentIsParsedFromItsOwnText)
{
    ASSERT_EQ(doc.ParseDocument("<a>&lt;b&gt;x&lt;/b&gt;</a>"), 1);
    ASSERT_EQ(doc.ParseDocument(doc.GetRootElement()->GetFirstChild()->GetText()), 1);
    EXPECT_EQ(body(), "<b>x</b>\n");
}

} // namespace
