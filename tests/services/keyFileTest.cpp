#include "host/services/keyfiles/keyFile.h"
#include <gtest/gtest.h>

namespace {

keyFile parsed(std::string_view text)
{
    keyFile file;
    EXPECT_TRUE(file.Parse(text));
    return file;
}

std::string valueOf(const keyFile& file, std::string_view section, std::string_view key)
{
    const std::string* value = file.Find(section, key);
    return value ? *value : "(none)";
}

std::string changed(std::string_view text, std::string_view section, std::string_view key,
                    std::string_view value)
{
    keyFile file = parsed(text);
    EXPECT_TRUE(file.Set(section, key, value));
    return file.Text();
}

} // namespace

TEST(KeyFile, AHandWrittenFileReadsNaturally)
{
    const keyFile file = parsed("; phone\n# more\n\n[Network]\n  eWANType = 2  \nstrPPPoEUser=a;b#c\n\n"
                                "[ Ring ]  \nstrRingFile = \"/a b/c.wav\"\n");
    EXPECT_EQ(valueOf(file, "Network", "eWANType"), "2");
    EXPECT_EQ(valueOf(file, "Network", "strPPPoEUser"), "a;b#c");
    EXPECT_EQ(valueOf(file, "Ring", "strRingFile"), "/a b/c.wav");
    EXPECT_EQ(valueOf(file, "Ring", "eWANType"), "(none)");
}

TEST(KeyFile, SectionsAndKeysAreFoundWithoutRegardToCase)
{
    const keyFile file = parsed("[nDeck]\nBENABLE=1\n");
    EXPECT_EQ(valueOf(file, "NDECK", "bEnable"), "1");
    EXPECT_EQ(valueOf(file, "ndeck", "benable"), "1");
}

TEST(KeyFile, TheFirstOfTwoEqualKeysCounts)
{
    EXPECT_EQ(valueOf(parsed("[A]\nk=1\nK=2\n[a]\nk=3\n"), "A", "k"), "1");
}

TEST(KeyFile, ASectionsValuesAreThoseThatCount)
{
    const keyFile file = parsed("[A]\nKey=1\nkey=2\n[B]\nx=9\n[a]\nkEY=3\nother=4\n");
    EXPECT_EQ(file.SectionKeys("a"), (std::vector<std::string>{"Key", "other"}));
    EXPECT_EQ(file.SectionValues("A"), (std::map<std::string, std::string>{{"key", "1"}, {"other", "4"}}));
}

TEST(KeyFile, AChangeOfAKeyThatIsThereTwiceIsReadBack)
{
    EXPECT_EQ(changed("[A]\nk=1\nk=2\n", "A", "k", "9"), "[A]\nk=9\nk=2\n");
}

TEST(KeyFile, KeysBeforeTheFirstSectionBelongToTheEmptySection)
{
    EXPECT_EQ(valueOf(parsed("k=1\n[A]\nk=2\n"), "", "k"), "1");
    EXPECT_EQ(changed("k=1\n[A]\nk=2\n", "", "n", "3"), "k=1\nn=3\n[A]\nk=2\n");
}

TEST(KeyFile, AChangeTouchesNothingButItsLine)
{
    const char* const text = "; top\n\n[A]\n  Key  =  old  \n; of B\n[B]\nother=\" x \"\nno sign here\n\n\n";
    EXPECT_EQ(parsed(text).Text(), text);
    EXPECT_EQ(changed(text, "a", "key", "new"),
              "; top\n\n[A]\n  Key  =  new\n; of B\n[B]\nother=\" x \"\nno sign here\n\n\n");
}

TEST(KeyFile, ANewKeyGoesToTheEndOfItsSection)
{
    EXPECT_EQ(changed("[A]\nk=1\n\n[B]\nz=2\n", "A", "n", "3"), "[A]\nk=1\nn=3\n\n[B]\nz=2\n");
    EXPECT_EQ(changed("[A]\nk=1\n[B]\nz=2", "B", "n", "3"), "[A]\nk=1\n[B]\nz=2\nn=3\n");
}

TEST(KeyFile, ANewSectionGoesToTheEndOfTheFile)
{
    EXPECT_EQ(changed("", "A", "k", "1"), "[A]\nk=1\n");
    EXPECT_EQ(changed("[A]\nk=1", "B", "n", "3"), "[A]\nk=1\n\n[B]\nn=3\n");
}

TEST(KeyFile, EitherKindOfLineEndStays)
{
    EXPECT_EQ(changed("[A]\r\nk=1\r\n", "A", "n", "3"), "[A]\r\nk=1\r\nn=3\r\n");
    EXPECT_EQ(changed("[A]\r\nk=1\n", "A", "k", "2"), "[A]\r\nk=2\n");
    EXPECT_EQ(valueOf(parsed("[A]\r\nk=1\r\n"), "A", "k"), "1");
}

TEST(KeyFile, AFileThatEndsInTheMiddleOfALineEndKeepsItsValues)
{
    EXPECT_EQ(valueOf(parsed("[A]\r\nk=1\r"), "A", "k"), "1");
    EXPECT_EQ(changed("[A]\r\nk=1\r", "A", "n", "2"), "[A]\r\nk=1\r\nn=2\r\n");
    EXPECT_EQ(changed("k=1\r", "", "n", "2"), "k=1\nn=2\n");
}

TEST(KeyFile, AByteOrderMarkIsReadOverAndStays)
{
    EXPECT_EQ(valueOf(parsed("\xEF\xBB\xBF[A]\nk=1\n"), "A", "k"), "1");
    EXPECT_EQ(changed("\xEF\xBB\xBF[A]\nk=1\n", "A", "k", "2"), "\xEF\xBB\xBF[A]\nk=2\n");
}

TEST(KeyFile, AValueMayHoldAnyTextButALineEnd)
{
    const std::string values[] = {"",     " ",      "  lead",   "trail \t", "\"",     "\"\"",     "\"q\"",
                                  "a\"b", "\"a",    "a\"",      ";c",       "#c",     "a=b",      "=",
                                  "[S]",  "\\n",    "%d %s",    "\xC3\xA9", "a;b",    "' '",      " \" \" ",
                                  "\t",   "\"\"\"", "\x01\x7F", "\xFF\xFE", "=\"x\"", "k=v # no", "\\"};
    for (const std::string& value : values) {
        keyFile file = parsed("[A]\nbefore=1\nk = x\n");
        ASSERT_TRUE(file.Set("A", "k", value));
        ASSERT_TRUE(file.Set("A", "new", value));
        const keyFile again = parsed(file.Text());
        EXPECT_EQ(valueOf(again, "A", "k"), value);
        EXPECT_EQ(valueOf(again, "A", "new"), value);
        EXPECT_EQ(valueOf(again, "A", "before"), "1");
    }
}

TEST(KeyFile, WhatAFileCannotHoldIsRefusedAndNothingChanges)
{
    keyFile file = parsed("[A]\nk=1\n");
    using namespace std::string_view_literals;
    for (std::string_view value : {"a\nb"sv, "a\r"sv, "\0"sv})
        EXPECT_FALSE(file.Set("A", "k", value));
    for (std::string_view key :
         {""sv, " k"sv, "k "sv, "a=b"sv, "[k"sv, ";k"sv, "#k"sv, "a\nb"sv, "\xEF\xBB\xBFk"sv})
        EXPECT_FALSE(file.Set("A", key, "1")) << key;
    for (std::string_view section : {"A]"sv, " A"sv, "A\n"sv})
        EXPECT_FALSE(file.Set(section, "k", "1")) << section;
    EXPECT_EQ(file.Text(), "[A]\nk=1\n");
}

TEST(KeyFile, WhatIsNoKeyFileIsNotUnderstood)
{
    keyFile file;
    EXPECT_FALSE(file.Parse(std::string_view("[A]\nk=\0\n", 8)));
    EXPECT_FALSE(file.Parse(std::string(4096, '\xFF')));
    EXPECT_FALSE(file.Parse("just a letter to somebody\n"));
    EXPECT_FALSE(file.Parse("[A]\nk=1\n\x01\x02\x03\n"));
    EXPECT_FALSE(file.Parse("[A]\nk=1\n\xC3(\n"));
    EXPECT_FALSE(file.Parse("[A]\nk=" + std::string(keyFile::SIZE_LIMIT, 'x') + "\n"));
    EXPECT_EQ(file.Text(), "");
}

TEST(KeyFile, AnEmptyFileAndOneOfCommentsAreUnderstood)
{
    keyFile file;
    EXPECT_TRUE(file.Parse(""));
    EXPECT_TRUE(file.Parse("\n \n"));
    EXPECT_TRUE(file.Parse("# nothing set\n"));
}

TEST(KeyFile, ManyKeysAreAllFound)
{
    keyFile file;
    for (int i = 0; i < 300; ++i)
        ASSERT_TRUE(file.Set("S" + std::to_string(i % 7), "k" + std::to_string(i), std::to_string(i)));
    const keyFile again = parsed(file.Text());
    for (int i = 0; i < 300; ++i)
        EXPECT_EQ(valueOf(again, "s" + std::to_string(i % 7), "K" + std::to_string(i)), std::to_string(i));
    EXPECT_EQ(again.SectionValues("S3").size(), 43u);
    EXPECT_EQ(again.SectionKeys("s0").front(), "k0");
}
