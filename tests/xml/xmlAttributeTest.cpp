#include "support/xml/xmlFile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Attribute : public testing::Test
{
protected:
    Attribute() : element(*doc.AddChildElement("e")) {}
    // The one line of the element.
    std::string written() const
    {
        const std::string text = doc.ExportToText().GetText();
        const size_t start = text.find("<e");
        return text.substr(start, text.size() - start - 1);
    }

    xmlDocument doc;
    xmlElement& element;
};

TEST_F(Attribute, AbsentOneIsNotFoundAndReadsAsEmpty)
{
    EXPECT_EQ(element.FindAttributeValue("k"), nullptr);
    phraseStringA& value = element.GetAttributeValue("k");
    EXPECT_TRUE(value.IsNull());
    EXPECT_TRUE(value.IsEmpty());
    EXPECT_STREQ(value, "");
    EXPECT_TRUE(value == "");
}

TEST_F(Attribute, ReadingDoesNotChangeWhatIsSaved)
{
    element.GetAttributeValue("z");
    element.GetAttributeValue("a");
    EXPECT_EQ(written(), "<e/>");
    EXPECT_EQ(element.FindAttributeValue("z"), nullptr);
    element.GetAttributeValue("a") = "1";
    element.GetAttributeValue("z") = "2";
    EXPECT_EQ(written(), "<e a=\"1\" z=\"2\"/>");
}

TEST_F(Attribute, AssigningMakesIt)
{
    element.GetAttributeValue("k") = "v";
    ASSERT_NE(element.FindAttributeValue("k"), nullptr);
    EXPECT_STREQ(*element.FindAttributeValue("k"), "v");
    EXPECT_FALSE(element.GetAttributeValue("k").IsNull());
    EXPECT_EQ(written(), "<e k=\"v\"/>");
}

TEST_F(Attribute, EmptyTextIsAValueToo)
{
    element.GetAttributeValue("k") = "";
    EXPECT_EQ(written(), "<e k=\"\"/>");
    element.GetAttributeValue("n") = static_cast<const char*>(nullptr);
    EXPECT_EQ(written(), "<e k=\"\" n=\"\"/>");
}

TEST_F(Attribute, IsAssignedFromEveryKindOfText)
{
    const chString text("chString");
    element.GetAttributeValue("a") = text;
    element.GetAttributeValue("b") = text.GetText();
    element.GetAttributeValue("c") = element.GetAttributeValue("a");
    element.SetAttributeValue("d", text);
    EXPECT_EQ(written(), "<e a=\"chString\" b=\"chString\" c=\"chString\" d=\"chString\"/>");
}

TEST_F(Attribute, IsChangedInItsPlace)
{
    ASSERT_EQ(doc.ParseDocument("<e a='1' b='2' c='3'/>"), 1);
    doc.GetRootElement()->GetAttributeValue("b") = "x";
    EXPECT_EQ(written(), "<e a=\"1\" b=\"x\" c=\"3\"/>");
}

TEST_F(Attribute, IsRemoved)
{
    ASSERT_EQ(doc.ParseDocument("<e a='1' b='2' c='3'/>"), 1);
    xmlElement* root = doc.GetRootElement();
    EXPECT_EQ(root->RemoveAttribute("c"), 1);
    EXPECT_EQ(root->RemoveAttribute("a"), 1);
    EXPECT_EQ(root->RemoveAttribute("none"), 0);
    root->GetAttributeValue("d") = "4";
    EXPECT_EQ(written(), "<e b=\"2\" d=\"4\"/>");
}

TEST_F(Attribute, ValueIsItsOwnSource)
{
    phraseStringA& value = element.GetAttributeValue("k");
    value = "0123456789";
    value = value.GetText() + 5;
    EXPECT_STREQ(value, "56789");
    value = value;
    EXPECT_STREQ(value, "56789");
}

TEST_F(Attribute, EveryLetterThatXmlHoldsComesBack)
{
    const char* text = " <a href=\"x\">&amp;'\t\r\n\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80 ]]> ";
    element.GetAttributeValue("k") = text;
    xmlDocument again;
    ASSERT_EQ(again.ParseDocument(doc.ExportToText()), 1);
    EXPECT_STREQ(again.GetRootElement()->GetAttributeValue("k"), text);
}

TEST_F(Attribute, LettersThatXmlCannotHoldAreLeftOut)
{
    element.GetAttributeValue("k") = "a\x01\x1f\x0b"
                                     "b\xef\xbf\xbe\xef\xbf\xbf"
                                     "c\x7f";
    EXPECT_STREQ(element.GetAttributeValue("k"), "abc\x7f");
    xmlDocument again;
    EXPECT_EQ(again.ParseDocument(doc.ExportToText()), 1);
}

TEST_F(Attribute, BytesThatAreNoUtf8BecomeTheReplacementLetter)
{
    const char* broken[] = {"\xff",
                            "\xc3",
                            "\xe2\x82",
                            "\xc0\x80",
                            "\xed\xa0\x80",
                            "\xf4\x90\x80\x80",
                            "\xf0\x80\x80\x80",
                            "\xf0\x8f\xbf\xbd",
                            "\x80"};
    for (const char* text : broken) {
        element.GetAttributeValue("k") = text;
        std::string replaced;
        for (size_t i = 0; i < strlen(text); ++i)
            replaced += "\xef\xbf\xbd";
        EXPECT_EQ(element.GetAttributeValue("k"), replaced.c_str());
        xmlDocument again;
        ASSERT_EQ(again.ParseDocument(doc.ExportToText()), 1);
        EXPECT_STREQ(again.GetRootElement()->GetAttributeValue("k"), element.GetAttributeValue("k"));
    }
}

TEST_F(Attribute, NameThatXmlDoesNotAllowIsRepairedOnce)
{
    element.GetAttributeValue("a b") = "1";
    element.GetAttributeValue("a b") = "2";
    element.GetAttributeValue("1") = "3";
    element.GetAttributeValue("") = "4";
    element.GetAttributeValue("<") = "5";
    EXPECT_EQ(written(), "<e a_b=\"2\" _=\"5\"/>");
}

TEST(PhraseString, StandsAloneToo)
{
    phraseStringA value;
    EXPECT_TRUE(value.IsNull());
    value = "x";
    phraseStringA copy(value);
    value = "y";
    EXPECT_TRUE(copy == "x");
    EXPECT_TRUE(copy != value);
    EXPECT_TRUE("x" == copy);
    EXPECT_TRUE("y" != copy);
    EXPECT_EQ(copy.GetString(), "x");
    EXPECT_EQ(copy.GetLength(), 1);
}

TEST(PhraseString, NullComparesAsEmpty)
{
    phraseStringA value;
    EXPECT_TRUE(value == static_cast<const char*>(nullptr));
    value = chString("x");
    EXPECT_TRUE(value != static_cast<const char*>(nullptr));
    EXPECT_TRUE(value == chString("x"));
}

TEST(PhraseString, CopyOfAnElementsValueOutlivesIt)
{
    phraseStringA copy;
    {
        xmlDocument doc;
        ASSERT_EQ(doc.ParseDocument("<a k='kept'/>"), 1);
        copy = doc.GetRootElement()->GetAttributeValue("k");
    }
    EXPECT_STREQ(copy, "kept");
}

TEST(PhraseString, AbsentValueAssignedToAPresentOneEmptiesIt)
{
    xmlDocument doc;
    ASSERT_EQ(doc.ParseDocument("<a k='v'/>"), 1);
    xmlElement* root = doc.GetRootElement();
    root->GetAttributeValue("k") = root->GetAttributeValue("absent");
    EXPECT_STREQ(root->GetAttributeValue("k"), "");
    EXPECT_NE(root->FindAttributeValue("k"), nullptr);
}

TEST(PhraseConstText, IsMadeOfEveryKindOfText)
{
    EXPECT_EQ(phraseConstTextA(nullptr).GetLength(), 0);
    EXPECT_EQ(phraseConstTextA("abc").GetLength(), 3);
    EXPECT_EQ(phraseConstTextA("abc", 2).GetLength(), 2);
    EXPECT_EQ(phraseConstTextA(chString("ab")).GetLength(), 2);
    EXPECT_TRUE(phraseConstTextA("abc", 2).Same("ab", 2));
    EXPECT_FALSE(phraseConstTextA("abc", 2).Same("abc", 3));
}

} // namespace
