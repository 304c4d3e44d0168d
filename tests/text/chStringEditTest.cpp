#include "tests/text/errorLines.h"
#include "tests/text/textBlock.h"

#include <climits>

using NUX_StringHelper::szNULL;

namespace {

// a, a letter of two bytes, one of three, one of four, z.
const char letters[] = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z";

class StringEdit : public testing::Test
{
protected:
    ~StringEdit() override { EXPECT_EQ(errors.Take(), ""); }

    errorLines errors;
};

} // namespace

TEST_F(StringEdit, RemoveAtMovesTheTailDown)
{
    chString text("0123456789");
    text.RemoveAt(2, 3);
    EXPECT_STREQ(text, "0156789");
    EXPECT_EQ(text.GetLength(), 7);
    EXPECT_TRUE(isSound(text));
    text.RemoveAt(0, 1);
    EXPECT_STREQ(text, "156789");
}

TEST_F(StringEdit, RemoveAtClipsTheCountAtTheEnd)
{
    chString text("0123456789");
    text.RemoveAt(8, INT_MAX);
    EXPECT_STREQ(text, "01234567");
    text.RemoveAt(0, 8);
    EXPECT_EQ(text.GetLength(), 0);
    EXPECT_TRUE(isSound(text));
}

TEST_F(StringEdit, RemoveAtDoesNothingForNoCountOrAnEmptyText)
{
    chString text("abc"), sharer(text);
    text.RemoveAt(1, 0);
    text.RemoveAt(3, 5);
    EXPECT_EQ(text.GetText(), sharer.GetText());
    chString empty;
    empty.RemoveAt(0, 4);
    EXPECT_EQ(empty.GetText(), szNULL);
}

TEST_F(StringEdit, RemoveAtLeavesASharerAlone)
{
    chString text("abc"), sharer(text);
    text.RemoveAt(0, 1);
    EXPECT_STREQ(text, "bc");
    EXPECT_STREQ(sharer, "abc");
}

TEST_F(StringEdit, RemoveAtReportsAnIndexOutsideTheText)
{
    chString text("abc");
    text.RemoveAt(-1, 1);
    EXPECT_EQ(errors.Take(), "nIndex >= 0 && nIndex <= GetLength()");
    text.RemoveAt(4, 1);
    EXPECT_EQ(errors.Take(), "nIndex >= 0 && nIndex <= GetLength()");
    EXPECT_STREQ(text, "abc");
}

TEST_F(StringEdit, RemoveAtReportsAnIndexInsideALetter)
{
    chString text(letters);
    for (int inside : {2, 4, 5, 7, 8, 9}) {
        text.RemoveAt(inside, 1);
        EXPECT_EQ(errors.Take(), "!chIsTrailbyte(m_lpszText[nIndex])") << inside;
    }
    EXPECT_STREQ(text, letters);
}

TEST_F(StringEdit, RemoveAtTakesTheWholeOfALetterThatItHits)
{
    chString two(letters), three(letters), four(letters);
    two.RemoveAt(1, 1);
    EXPECT_STREQ(two, "a\xE2\x82\xAC\xF0\x9F\x98\x80z");
    three.RemoveAt(0, 4);
    EXPECT_STREQ(three, "\xF0\x9F\x98\x80z");
    four.RemoveAt(6, 3);
    EXPECT_STREQ(four, "a\xC3\xA4\xE2\x82\xACz");
    EXPECT_TRUE(isSound(four));
}

TEST_F(StringEdit, MidLettersGivesBytesFromAPlace)
{
    const chString text("0123456789");
    EXPECT_STREQ(text.MidLetters(2, 3), "234");
    EXPECT_STREQ(text.MidLetters(7, 99), "789");
    EXPECT_STREQ(text.MidLetters(7, -1), "789");
    EXPECT_STREQ(text.MidLetters(-5, 2), "01");
    EXPECT_EQ(text.MidLetters(10, 1).GetText(), szNULL);
    EXPECT_EQ(text.MidLetters(3, 0).GetText(), szNULL);
    EXPECT_EQ(chString().MidLetters(0, 5).GetText(), szNULL);
    EXPECT_EQ(text.MidLetters(3, INT_MAX).GetLength(), 7);
}

TEST_F(StringEdit, MidLettersOfEverythingSharesTheBlock)
{
    const chString text("abc");
    EXPECT_EQ(text.MidLetters(0, -1).GetText(), text.GetText());
}

TEST_F(StringEdit, MidLettersHasOnlyWholeLetters)
{
    const chString text(letters);
    EXPECT_STREQ(text.MidLetters(0, 2), "a");
    EXPECT_STREQ(text.MidLetters(2, 4), "\xE2\x82\xAC");
    EXPECT_STREQ(text.MidLetters(2, 7), "\xE2\x82\xAC");
    EXPECT_EQ(text.MidLetters(7, 2).GetText(), szNULL);
    EXPECT_STREQ(text.MidLetters(9, 5), "z");
}

TEST_F(StringEdit, RightLettersGivesTheLastBytes)
{
    const chString text("0123456789");
    EXPECT_STREQ(text.RightLetters(3), "789");
    EXPECT_STREQ(text.RightLetters(10), "0123456789");
    EXPECT_STREQ(text.RightLetters(11), "0123456789");
    EXPECT_EQ(text.RightLetters(0).GetText(), szNULL);
    EXPECT_EQ(text.RightLetters(-1).GetText(), szNULL);
}

TEST_F(StringEdit, RightLettersHasOnlyWholeLetters)
{
    const chString text(letters);
    EXPECT_STREQ(text.RightLetters(4), "z");
    EXPECT_STREQ(text.RightLetters(5), "\xF0\x9F\x98\x80z");
    EXPECT_STREQ(text.RightLetters(6), "\xF0\x9F\x98\x80z");
}

TEST_F(StringEdit, ReverseDeleteLettersDeletesTheLastBytes)
{
    chString text("/rundata/file.ing"), sharer(text);
    text.ReverseDeleteLetters(4);
    EXPECT_STREQ(text, "/rundata/file");
    EXPECT_STREQ(sharer, "/rundata/file.ing");
    EXPECT_TRUE(isSound(text));
    text.ReverseDeleteLetters(0);
    text.ReverseDeleteLetters(-3);
    EXPECT_STREQ(text, "/rundata/file");
    text.ReverseDeleteLetters(100);
    EXPECT_EQ(text.GetLength(), 0);
    text.ReverseDeleteLetters(1);
    EXPECT_EQ(text.GetLength(), 0);
}

TEST_F(StringEdit, ReverseDeleteLettersTakesTheWholeOfALetterThatItHits)
{
    chString text(letters);
    text.ReverseDeleteLetters(2);
    EXPECT_STREQ(text, "a\xC3\xA4\xE2\x82\xAC");
    text.ReverseDeleteLetters(1);
    EXPECT_STREQ(text, "a\xC3\xA4");
    text.ReverseDeleteLetters(1);
    EXPECT_STREQ(text, "a");
    EXPECT_TRUE(isSound(text));
}

// ---- joining ----

TEST_F(StringEdit, PlusMakesANewString)
{
    const chString a("abc"), b("def");
    EXPECT_STREQ(a + b, "abcdef");
    EXPECT_STREQ(a + "xyz", "abcxyz");
    EXPECT_STREQ("xyz" + a, "xyzabc");
    EXPECT_STREQ(chString() + b, "def");
    EXPECT_STREQ(a + chString(), "abc");
    EXPECT_STREQ(a + "", "abc");
    EXPECT_STREQ(a, "abc");
    EXPECT_TRUE(isSound(a + b));
    EXPECT_EQ(capacityOf(a + "0123456789abc"), 16);
    EXPECT_EQ(capacityOf(a + "0123456789abcd"), 32);
}

TEST_F(StringEdit, PlusEqualsAddsAndLeavesSharersAlone)
{
    chString text("abc"), sharer(text);
    text += "def";
    text += chString("ghi");
    EXPECT_STREQ(text, "abcdefghi");
    EXPECT_EQ(text.GetLength(), 9);
    EXPECT_STREQ(sharer, "abc");
    EXPECT_TRUE(isSound(text));
}

TEST_F(StringEdit, PlusEqualsOfAnEmptyStringSharesTheOther)
{
    const chString other("abc");
    chString text;
    text += other;
    EXPECT_EQ(text.GetText(), other.GetText());
    EXPECT_EQ(referencesOf(other), 2);
}

TEST_F(StringEdit, PlusEqualsTakesPartsOfItself)
{
    chString text("0123456789");
    text += text;
    EXPECT_STREQ(text, "01234567890123456789");
    text += text.GetText() + 18;
    EXPECT_STREQ(text, "0123456789012345678989");
    chString shared(text);
    text += text;
    EXPECT_EQ(text.GetLength(), 44);
    EXPECT_STREQ(shared, "0123456789012345678989");
    EXPECT_TRUE(isSound(text));
}

TEST_F(StringEdit, PlusReportsANullTextAndAddsNothing)
{
    chString text("abc");
    text += static_cast<const char*>(nullptr);
    EXPECT_EQ(errors.Take(), "lpszText != NULL");
    EXPECT_STREQ(text, "abc");
}

// ---- comparing ----

TEST_F(StringEdit, EqualsByText)
{
    const chString a("abc"), same("abc"), copy(a), other("abd"), longer("abcd");
    EXPECT_TRUE(a == same);
    EXPECT_TRUE(a == copy);
    EXPECT_FALSE(a == other);
    EXPECT_FALSE(a == longer);
    EXPECT_TRUE(a != other);
    EXPECT_FALSE(a != same);
    EXPECT_TRUE(a == "abc");
    EXPECT_TRUE("abc" == a);
    EXPECT_TRUE(a == a.GetText());
    EXPECT_FALSE(a == "abcd");
    EXPECT_TRUE(a != "ab");
    EXPECT_TRUE("ab" != a);
    EXPECT_TRUE(chString() == "");
}

TEST_F(StringEdit, OfDifferentLengthsIsNotEqualWithoutLookingAtTheText)
{
    chString a("abc");
    const chString b("abc");
    a.GetStringData()->m_nDataLength = 2;
    EXPECT_FALSE(a == b);
    a.GetStringData()->m_nDataLength = 3;
    EXPECT_TRUE(a == b);
}

TEST_F(StringEdit, EmptyBlockEqualsTheEmptyText)
{
    chString emptied("abc");
    emptied.CopyTextFrom("", -1);
    ASSERT_NE(emptied.GetStringData(), nullptr);
    EXPECT_TRUE(emptied == chString());
    EXPECT_FALSE(emptied != chString());
}

TEST_F(StringEdit, ComparingWithNullReportsAndTakesItAsEmpty)
{
    const char* null = nullptr;
    EXPECT_TRUE(chString() == null);
    EXPECT_FALSE(chString("a") == null);
    EXPECT_EQ(errors.Take(), "lpszText != NULL | lpszText != NULL");
}

TEST_F(StringEdit, OrdersByBytes)
{
    const chString a("abc"), b("abd"), umlaut("\xC3\xA4"), z("z");
    EXPECT_TRUE(b > a);
    EXPECT_FALSE(a > b);
    EXPECT_FALSE(a > a);
    EXPECT_TRUE(umlaut > z);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_TRUE(a > chString());
}

TEST_F(StringEdit, SameAsAConstantText)
{
    constexpr chConstTextT<char> constant("Status");
    EXPECT_EQ(constant.GetLength(), 6);
    EXPECT_TRUE(stringSame(chString("Status"), constant));
    EXPECT_FALSE(stringSame(chString("status"), constant));
    EXPECT_FALSE(stringSame(chString("Statu"), constant));
    EXPECT_TRUE(stringSame(chString(), chConstTextT<char>(nullptr)));
}

// ---- reading ----

TEST_F(StringEdit, ReadsADecimalNumber)
{
    const auto read = [](const char* text) {
        int number = 77;
        chString(text) >> number;
        return number;
    };
    EXPECT_EQ(read("42"), 42);
    EXPECT_EQ(read("-17"), -17);
    EXPECT_EQ(read("  5060 "), 5060);
    EXPECT_EQ(read("12abc"), 12);
    EXPECT_EQ(read("010"), 10);
    EXPECT_EQ(read("abc"), 0);
    EXPECT_EQ(read(""), 0);
    EXPECT_EQ(read("99999999999999999999"), INT_MAX);
    EXPECT_EQ(read("-99999999999999999999"), INT_MIN);
}

TEST_F(StringEdit, ReadsATextBySharingIt)
{
    const chString text("abc");
    chString copy("old");
    text >> copy;
    EXPECT_EQ(copy.GetText(), text.GetText());
}

TEST_F(StringEdit, PhrasesEndAtTheToken)
{
    const char* cursor = "1.0..42";
    chString phrase;
    EXPECT_EQ(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "1");
    EXPECT_STREQ(cursor, "0..42");
    EXPECT_EQ(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "0");
    EXPECT_EQ(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "");
    EXPECT_EQ(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "42");
    EXPECT_STREQ(cursor, "");
    EXPECT_NE(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "42");
}

TEST_F(StringEdit, NoPhraseIsInAnEmptyTextOrBehindTheLastToken)
{
    chString phrase("before");
    const char* empty = "";
    EXPECT_NE(nuxPeekPhraseByCharToken(empty, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "before");
    const char* cursor = "a.";
    EXPECT_EQ(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_NE(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "a");
    const char* null = nullptr;
    EXPECT_NE(nuxPeekPhraseByCharToken(null, phrase, '.'), 0);
    EXPECT_EQ(errors.Take(), "lpszText != NULL");
}

TEST_F(StringEdit, TokenNeverSplitsALetter)
{
    const char* cursor = "\xC3\xA4.b";
    chString phrase;
    EXPECT_EQ(nuxPeekPhraseByCharToken(cursor, phrase, '\xA4'), 0);
    EXPECT_STREQ(phrase, "\xC3\xA4.b");
    cursor = "\xC3\xA4.b";
    EXPECT_EQ(nuxPeekPhraseByCharToken(cursor, phrase, '.'), 0);
    EXPECT_STREQ(phrase, "\xC3\xA4");
}
