#include "support/text/chCharacter.h"

#include <gtest/gtest.h>

TEST(Character, LeadBytesBeginLettersOfTwoToFourBytes)
{
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(chIsLeadbyte(static_cast<char>(code)), code >= 0xC2 && code <= 0xF4) << code;
}

TEST(Character, TrailBytesAreTheRest)
{
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(chIsTrailbyte(static_cast<char>(code)), code >= 0x80 && code <= 0xBF) << code;
}

TEST(Character, WhiteSpaceIsBlankAndTheFiveControls)
{
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(chIsWhiteSpace(static_cast<char>(code)), code == 32 || (code >= 9 && code <= 13)) << code;
}

TEST(Character, UpperChangesAsciiLettersOnly)
{
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(chUpper(static_cast<char>(code)),
                  static_cast<char>(code >= 'a' && code <= 'z' ? code - 32 : code))
            << code;
}

TEST(Character, LetterOfAnyLengthCountsAsOne)
{
    EXPECT_EQ(chLetterLength(""), 0);
    EXPECT_EQ(chLetterLength("abc"), 1);
    EXPECT_EQ(chLetterLength("\xC3\xA4x"), 2);
    EXPECT_EQ(chLetterLength("\xE2\x82\xACx"), 3);
    EXPECT_EQ(chLetterLength("\xF0\x9F\x98\x80x"), 4);
}

TEST(Character, BrokenLetterIsAsLongAsWhatIsLeftOfIt)
{
    EXPECT_EQ(chLetterLength("\xE2\x82"), 2);
    EXPECT_EQ(chLetterLength("\xE2x\x82"), 1);
    EXPECT_EQ(chLetterLength("\x82\x82"), 1);
    EXPECT_EQ(chLetterLength("\xFF\x82"), 1);
    EXPECT_EQ(chLetterLength("\xC3\xA4\xA4"), 2);
}

TEST(Character, BoundariesOfALetterAreFoundFromAnyOfItsBytes)
{
    const char* text = "a\xF0\x9F\x98\x80z";
    const int starts[] = {0, 1, 1, 1, 1, 5, 6};
    const int ends[] = {0, 1, 5, 5, 5, 5, 6};
    for (int index = 0; index <= 6; ++index) {
        EXPECT_EQ(chLetterStart(text, index), starts[index]) << index;
        EXPECT_EQ(chLetterEnd(text, index), ends[index]) << index;
        EXPECT_EQ(chWholeLetters(text, index), starts[index]) << index;
    }
}

TEST(Character, StrayTrailBytesAreBoundariesOfTheirOwn)
{
    const char* stray = "\x82\x82\x82\x82\x82";
    for (int index = 0; index <= 5; ++index) {
        EXPECT_EQ(chLetterStart(stray, index), index);
        EXPECT_EQ(chLetterEnd(stray, index), index);
        EXPECT_EQ(chWholeLetters(stray, index), index);
    }
    EXPECT_EQ(chLetterStart("\xC3\xA4\xA4", 2), 2);
    EXPECT_EQ(chLetterStart("a\xA4", 1), 1);
}
