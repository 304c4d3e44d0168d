#include "support/text/chFormat.h"
#include "tests/text/errorLines.h"
#include "tests/text/textBlock.h"

#include <climits>
#include <clocale>
#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <vector>

namespace {

// Formats that the compiler need not look at.
void formatInto(chString& text, const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    EXPECT_EQ(text.FormatV(fmt, &args), 1);
    va_end(args);
    EXPECT_TRUE(isSound(text));
}

chString formatted(const char* fmt, ...)
{
    chString text;
    va_list args;
    va_start(args, fmt);
    EXPECT_EQ(text.FormatV(fmt, &args), 1);
    va_end(args);
    EXPECT_TRUE(isSound(text));
    return text;
}

int estimated(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int estimate = chSurveyFormat(fmt, &args, nullptr, nullptr).nEstimate;
    va_end(args);
    return estimate;
}

int printed(char* buffer, int size, const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int length = chVsprintf(buffer, size, fmt, &args);
    va_end(args);
    return length;
}

// A language with a decimal comma, made for the test, is that of the process while this lives.
class commaLanguage
{
public:
    commaLanguage()
    {
        char folder[] = "/tmp/hxlocale.XXXXXX";
        m_folder = mkdtemp(folder);
        std::ofstream(m_folder + "/source") << "LC_NUMERIC\n"
                                               "decimal_point \",\"\n"
                                               "thousands_sep \"\"\n"
                                               "grouping -1\n"
                                               "END LC_NUMERIC\n";
        // It warns of the categories that are left out, and says so by its exit status.
        const std::string in = "cd " + m_folder + " && ";
        EXPECT_NE(system((in + "localedef --no-archive -c -i ./source ./comma 2>log").c_str()), -1);
        setenv("LOCPATH", m_folder.c_str(), 1);
        EXPECT_STREQ(setlocale(LC_NUMERIC, "comma"), "comma");
    }
    ~commaLanguage()
    {
        setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
        std::filesystem::remove_all(m_folder);
    }
    commaLanguage(const commaLanguage&) = delete;
    commaLanguage& operator=(const commaLanguage&) = delete;

private:
    std::string m_folder;
};

class Format : public testing::Test
{
protected:
    ~Format() override { EXPECT_EQ(errors.Take(), ""); }

    errorLines errors;
};

const char euro[] = "\xE2\x82\xAC";

} // namespace

TEST_F(Format, PrintsLikePrintf)
{
    EXPECT_STREQ(formatted("Account%d", 3), "Account3");
    EXPECT_STREQ(formatted("%s/%s.%03d", "/rundata", "file", 7), "/rundata/file.007");
    EXPECT_STREQ(formatted("%-6s|%6s|%.2s", "ab", "cd", "efg"), "ab    |    cd|ef");
    EXPECT_STREQ(formatted("%x %X %#x %o %u", 255, 255, 255, 8, 4000000000u), "ff FF 0xff 10 4000000000");
    EXPECT_STREQ(formatted("%+d % d %05d %-5d|", 1, 2, 3, 4), "+1  2 00003 4    |");
    EXPECT_STREQ(formatted("%c%c%c", 'a', 'b', 'c'), "abc");
    EXPECT_STREQ(formatted("%.2f %e %g", 1.5, 1.0, 0.25), "1.50 1.000000e+00 0.25");
    EXPECT_STREQ(formatted("100%%"), "100%");
    EXPECT_STREQ(formatted("%*d|%-*d|%.*f", 4, 1, 4, 2, 1, 2.25), "   1|2   |2.2");
    EXPECT_STREQ(formatted("%*d|%*s|%.*d", -4, 1, -3, "a", -1, 7), "1   |a  |7");
    EXPECT_STREQ(formatted("%hd %hhd %ld %lld", 70000, 300, 5L, 6LL), "4464 44 5 6");
    EXPECT_STREQ(formatted("%zu %jd %td", size_t{9}, intmax_t{8}, ptrdiff_t{7}), "9 8 7");
}

TEST_F(Format, PrintsIntegersLikePrintfWithEveryFlagWidthAndPrecision)
{
    const int values[] = {0, 1, -1, 7, -42, 123456, INT_MAX, INT_MIN};
    for (const char* flags : {"", "-", "0", "+", " ", "#", "-0", "+0", "0+", "0 ", "+-", "#0", "-+ 0#"})
        for (const char* width : {"", "1", "5", "12", "40"})
            for (const char* precision : {"", ".", ".0", ".3", ".11", ".35"})
                for (char conversion : {'d', 'i', 'u', 'o', 'x', 'X'})
                    for (int value : values) {
                        const std::string fmt =
                            "<%" + std::string(flags) + width + precision + conversion + ">";
                        char expected[80];
                        snprintf(expected, sizeof(expected), fmt.c_str(), value);
                        ASSERT_STREQ(formatted(fmt.c_str(), value), expected) << fmt;
                    }
}

TEST_F(Format, EmptyFormatGivesAnEmptyText)
{
    chString text("abc");
    formatInto(text, "");
    EXPECT_EQ(text.GetLength(), 0);
    EXPECT_TRUE(isSound(text));
}

TEST_F(Format, OfANullTextDoesNotFail)
{
    EXPECT_STREQ(formatted("%s", static_cast<char*>(nullptr)), "(null)");
    EXPECT_STREQ(formatted("[%10s]", static_cast<char*>(nullptr)), "[    (null)]");
    EXPECT_STREQ(formatted("%S", static_cast<wchar_t*>(nullptr)), "(null)");
    EXPECT_LE(formatted("%.3s", static_cast<char*>(nullptr)).GetLength(), 3);
}

TEST_F(Format, OfAHugeFloatFits)
{
    char expected[400];
    snprintf(expected, sizeof(expected), "%f", -std::numeric_limits<double>::max());
    EXPECT_STREQ(formatted("%f", -std::numeric_limits<double>::max()), expected);
    EXPECT_GT(strlen(expected), 300u);
    snprintf(expected, sizeof(expected), "%.60f", std::numeric_limits<double>::max());
    EXPECT_STREQ(formatted("%.60f", std::numeric_limits<double>::max()), expected);
}

TEST_F(Format, SixtyFourBitPrefixConsumesTwoWords)
{
    EXPECT_STREQ(formatted("%I64d|%d", INT64_MIN, 5), "-9223372036854775808|5");
    EXPECT_STREQ(formatted("%I64u %I64x %016I64X", UINT64_MAX, UINT64_C(0xABCDEF0123), UINT64_C(0xAB)),
                 "18446744073709551615 abcdef0123 00000000000000AB");
    EXPECT_STREQ(formatted("%-22I64d|%s", INT64_C(-5), "x"), "-5                    |x");
}

TEST_F(Format, FarPointerLettersAreIgnored)
{
    EXPECT_STREQ(formatted("%Fs %Ns %Ls", "a", "b", "c"), "a b c");
    EXPECT_STREQ(formatted("%Ld %d", 1, 2), "1 2");
    EXPECT_STREQ(formatted("%Lf", 1.5), "1.500000");
}

TEST_F(Format, CountConversionNeverWritesMemory)
{
    int count = -77;
    EXPECT_STREQ(formatted("abc%nd%d", &count, 5), "abcd5");
    EXPECT_EQ(count, -77);
    EXPECT_EQ(estimated("abc%n", &count), 3);
}

TEST_F(Format, UnknownConversionIsReportedAndPrintedAsItStands)
{
    EXPECT_STREQ(formatted("%y|%d", 5), "%y|5");
    EXPECT_EQ(errors.Take(), "unknown conversion in a format");
    EXPECT_STREQ(formatted("50%"), "50%");
    EXPECT_EQ(errors.Take(), "unknown conversion in a format");
    EXPECT_STREQ(formatted("%\xC3\xA4%s", "x"), "%\xC3\xA4x");
    EXPECT_EQ(errors.Take(), "unknown conversion in a format");
    EXPECT_STREQ(formatted("%E", 1.0), "1.000000E+00");
    EXPECT_EQ(errors.Take(), "unknown conversion in a format");
}

TEST_F(Format, NullFormatIsReportedAndGivesAnEmptyText)
{
    EXPECT_STREQ(formatted(nullptr), "");
    EXPECT_EQ(errors.Take(), "lpszText != NULL");
}

// ---- the measuring pass ----

TEST_F(Format, EstimateCountsLettersByTheirBytes)
{
    EXPECT_EQ(estimated(""), 0);
    EXPECT_EQ(estimated("abc"), 3);
    EXPECT_EQ(estimated("a\xC3\xA4"), 3);
    EXPECT_EQ(estimated("%%%%x"), 3);
}

TEST_F(Format, EstimateOfACharacterIsTwo)
{
    EXPECT_EQ(estimated("%c", 'a'), 2);
    EXPECT_EQ(estimated("%hc", 'a'), 2);
    EXPECT_EQ(estimated("%C", 'a'), 2);
    EXPECT_EQ(estimated("%lc", 'a'), 2);
}

TEST_F(Format, EstimateOfATextIsItsLength)
{
    EXPECT_EQ(estimated("%s", "abcd"), 4);
    EXPECT_EQ(estimated("%s", ""), 1);
    EXPECT_EQ(estimated("%s", static_cast<char*>(nullptr)), 6);
    EXPECT_EQ(estimated("%S", L"abcd"), 8);
    EXPECT_EQ(estimated("%ls", L"abcd"), 8);
    EXPECT_EQ(estimated("%hS", "abcd"), 4);
    EXPECT_EQ(estimated("%.2s", "abcd"), 2);
    EXPECT_EQ(estimated("%9s", "abcd"), 9);
    EXPECT_EQ(estimated("%2s", "abcd"), 4);
    EXPECT_EQ(estimated("%9.2s", "abcd"), 9);
    EXPECT_EQ(estimated("%*s", 20, "abcd"), 20);
    EXPECT_EQ(estimated("%.*s", 3, "abcd"), 3);
    EXPECT_EQ(estimated("%.0s", "abcd"), 0);
    EXPECT_EQ(estimated("%.2s", static_cast<char*>(nullptr)), 2);
    EXPECT_EQ(estimated("%.*s", -1, "abcd"), 4);
}

TEST_F(Format, EstimateOfAnIntegerIsAtLeast32)
{
    for (const char* fmt : {"%d", "%i", "%u", "%o", "%x", "%X", "%hd", "%5d", "%-08.4d"})
        EXPECT_EQ(estimated(fmt, 1), 32) << fmt;
    EXPECT_EQ(estimated("%I64d", INT64_C(1)), 32);
    EXPECT_EQ(estimated("%p", static_cast<void*>(nullptr)), 32);
    EXPECT_EQ(estimated("%#x", 1), 34);
    EXPECT_EQ(estimated("%40d", 1), 40);
    EXPECT_EQ(estimated("%40.20d", 1), 60);
    EXPECT_EQ(estimated("%*.*d", 30, 20, 1), 50);
}

TEST_F(Format, EstimateOfANumberWithAPointIsAtLeast128)
{
    for (const char* fmt : {"%e", "%g", "%G"})
        EXPECT_EQ(estimated(fmt, 1.0), 128) << fmt;
    EXPECT_EQ(estimated("%100.50e", 1.0), 150);
    EXPECT_EQ(estimated("%f", 1.0), 312);
    EXPECT_EQ(estimated("%.10f", 1.0), 322);
}

TEST_F(Format, CapacityComesFromTheEstimate)
{
    EXPECT_EQ(capacityOf(formatted("abc")), 16);
    EXPECT_EQ(capacityOf(formatted("%d", 1)), 32);
    EXPECT_EQ(capacityOf(formatted("a%d", 1)), 48);
    EXPECT_EQ(capacityOf(formatted("%f", 1.0)), 320);
    chString text("0123456789abcdef0123456789abcdef0123456789");
    const int before = capacityOf(text);
    const char* block = text.GetText();
    text.Format("%d", 7);
    EXPECT_EQ(text.GetText(), block) << "a block owned alone that is large enough stays";
    EXPECT_EQ(capacityOf(text), before);
    EXPECT_TRUE(isSound(text));
}

TEST_F(Format, IsNotCutWhereTheEstimateIsTooSmall)
{
    const std::string digits(48, '1');
    EXPECT_STREQ(formatted("%.48d|%s", -1, "x"), ("-" + std::string(47, '0') + "1|x").c_str());
    EXPECT_EQ(formatted("%400f", 1.0).GetLength(), 400);
    EXPECT_EQ(formatted("%.200e", 1.0).GetLength(), 206);
    EXPECT_EQ(formatted("%60c", 'a').GetLength(), 60);
    EXPECT_EQ(formatted("%060d%I64d", 1, INT64_C(2)).GetLength(), 61);
}

TEST_F(Format, HugeFieldsAreBounded)
{
    EXPECT_EQ(formatted("%2000000000d", 1).GetLength(), chFormatFieldLimit);
    EXPECT_EQ(formatted("%99999999999999999999s", "a").GetLength(), chFormatFieldLimit);
    EXPECT_EQ(formatted("%.2000000000d", 1).GetLength(), chFormatFieldLimit);
    EXPECT_EQ(formatted("%*d", INT_MIN, 1).GetLength(), chFormatFieldLimit);
    EXPECT_EQ(formatted("%.2000000000f", 1.0).GetLength(), chFormatFieldLimit + 2);
    EXPECT_EQ(formatted("%.*s", INT_MAX, std::string(100000, 'x').c_str()).GetLength(), 100000);
}

TEST_F(Format, OfMoreThanATextMayHoldLeavesTheStringAsItWas)
{
    const std::string large(dynamicAlloc::MAX_BLOCK, 'x');
    chString text("abc");
    EXPECT_EQ(text.Format("%s%s", large.c_str(), large.c_str()), 1);
    EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
    EXPECT_STREQ(text, "abc");
}

TEST_F(Format, IsCutWhereTheLargestTextIsTooSmallForWhatTheEstimateLeftOut)
{
    const std::string large(dynamicAlloc::MAX_BLOCK - 16 - 312, 'x');
    const chString text = formatted("%s%400f", large.c_str(), 1.0);
    EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
    EXPECT_EQ(text.GetLength(), dynamicAlloc::MAX_BLOCK - 16);
}

// ---- letters ----

TEST_F(Format, PrecisionTakesNoPartOfALetter)
{
    const std::string text = std::string("a") + euro;
    for (int precision = 1; precision <= 3; ++precision)
        EXPECT_STREQ(formatted("%.*s|", precision, text.c_str()), "a|") << precision;
    EXPECT_STREQ(formatted("%.4s|", text.c_str()), (text + "|").c_str());
    EXPECT_STREQ(formatted("[%5.3s]", text.c_str()), "[    a]");
    EXPECT_STREQ(formatted("[%-5.3s]", text.c_str()), "[a    ]");
}

TEST_F(Format, PrecisionReadsNoByteBehindIt)
{
    const std::vector<char> unterminated = {'a', 'b', 'c'};
    EXPECT_STREQ(formatted("%.3s", unterminated.data()), "abc");
    EXPECT_STREQ(formatted("%.3s%n", unterminated.data(), nullptr), "abc");
}

TEST_F(Format, WideTextBecomesUtf8)
{
    const wchar_t wide[] = {L'a', 0xE4, 0x20AC, 0x1F600, 0};
    const char* narrow = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_STREQ(formatted("%S", wide), narrow);
    EXPECT_STREQ(formatted("%ls|%s", wide, "x"), (std::string(narrow) + "|x").c_str());
    EXPECT_STREQ(formatted("%.5ls|", wide), "a\xC3\xA4|");
    EXPECT_STREQ(formatted("%12ls|%-12ls|", wide, wide),
                 (std::string("  ") + narrow + "|" + narrow + "  |").c_str());
    EXPECT_STREQ(formatted("%C%lc", 0x20AC, 0xE4), (std::string(euro) + "\xC3\xA4").c_str());
    const wchar_t broken[] = {0xD800, 0};
    EXPECT_STREQ(formatted("%S", broken), "\xEF\xBF\xBD");
}

TEST_F(Format, TerminatorAsACharacterPrintsNothing)
{
    EXPECT_STREQ(formatted("a%cb", 0), "ab");
    EXPECT_STREQ(formatted("a%Cb", 0), "ab");
}

TEST_F(Format, DecimalPointDoesNotFollowTheLanguage)
{
    const commaLanguage language;
    EXPECT_STREQ(formatted("%.1f %g", 1.5, 0.5), "1.5 0.5");
    EXPECT_STREQ(formatted("%e", 1.5), "1.500000e+00");
    char buffer[8];
    snprintf(buffer, sizeof(buffer), "%.1f", 1.5);
    EXPECT_STREQ(buffer, "1,5") << "the language of the process is as it was";
}

// ---- into a string that takes part ----

TEST_F(Format, ArgumentsMayBePartsOfTheText)
{
    chString text("abc");
    text.Format("<%s-%s>", text.GetText(), text.GetText() + 1);
    EXPECT_STREQ(text, "<abc-bc>");
    EXPECT_TRUE(isSound(text));
    for (int i = 0; i < 5; ++i)
        text.Format("%s%s", text.GetText(), text.GetText());
    EXPECT_EQ(text.GetLength(), 8 * 32);
    text = "x%%y";
    formatInto(text, text.GetText());
    EXPECT_STREQ(text, "x%y");
    EXPECT_EQ(referencesOf(text), 1);
}

TEST_F(Format, LeavesASharerAlone)
{
    chString text("abcdefghijklmnopqrstuvwxyz"), sharer(text);
    text.Format("%d", 5);
    EXPECT_STREQ(text, "5");
    EXPECT_TRUE(isSound(text));
    EXPECT_STREQ(sharer, "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(referencesOf(sharer), 1);
    text.Format("%s", sharer.GetText());
    EXPECT_STREQ(text, sharer);
}

TEST_F(Format, ShorterTextLeavesNothingOfTheLongerOne)
{
    chString text("0123456789abcdef0123456789abcdef");
    text.Format("%s", "xy");
    EXPECT_STREQ(text, "xy");
    EXPECT_TRUE(isSound(text));
    text.GetStringData()->m_nDataLength = -1;
    text.Format("%c", 'z');
    EXPECT_TRUE(isSound(text));
}

TEST_F(Format, FmtStringGivesANewString)
{
    const chString text = fmtString("%02d:%02d", 7, 5);
    EXPECT_STREQ(text, "07:05");
    EXPECT_EQ(text.GetStringData()->m_nDataLength, 5);
    EXPECT_EQ(referencesOf(text), 1);
}

// ---- the bounded formatter ----

TEST_F(Format, BoundedFormatterNeverWritesPastTheSize)
{
    for (int size = 1; size <= 12; ++size) {
        char buffer[16];
        memset(buffer, '#', sizeof(buffer));
        const int length = printed(buffer, size, "%s%d", "abcdef", 12);
        EXPECT_EQ(length, size > 8 ? 8 : size - 1);
        EXPECT_EQ(std::string(buffer), std::string("abcdef12").substr(0, static_cast<size_t>(length)));
        EXPECT_EQ(buffer[size], '#') << size;
        memset(buffer, '#', sizeof(buffer));
        EXPECT_EQ(printed(buffer, size, "%I64d%s", INT64_C(123456), "78"), length);
        EXPECT_EQ(std::string(buffer), std::string("12345678").substr(0, static_cast<size_t>(length)));
        EXPECT_EQ(buffer[size], '#') << size;
    }
}

TEST_F(Format, BoundedFormatterCutsBetweenLetters)
{
    for (const char* fmt : {"a%s", "a%ls%n"}) {
        const wchar_t wide[] = {0x20AC, 0};
        char buffer[8];
        memset(buffer, '#', sizeof(buffer));
        const void* text = strchr(fmt, 'l') ? static_cast<const void*>(wide) : euro;
        EXPECT_EQ(printed(buffer, 4, fmt, text, nullptr), 1) << fmt;
        EXPECT_STREQ(buffer, "a");
        EXPECT_EQ(buffer[4], '#');
    }
}

TEST_F(Format, BoundedFormatterWritesNothingWithoutRoom)
{
    EXPECT_EQ(printed(nullptr, 8, "abc"), 0);
    EXPECT_EQ(errors.Take(), "lpszText != NULL");
    char buffer[2] = {'#', '#'};
    EXPECT_EQ(printed(buffer, 0, "abc"), 0);
    EXPECT_EQ(printed(buffer, -1, "abc"), 0);
    EXPECT_EQ(buffer[0], '#');
    EXPECT_EQ(printed(buffer, 1, "abc"), 0);
    EXPECT_EQ(buffer[0], 0);
}
