// The clock text of the menus.
#include "frame/dateTimeFormat.h"
#include "frame/configFiles.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/text/nuxError.h"
#include "tests/frame/frameTest.h"

namespace {

std::string g_error;

class ClockText : public FrameTest
{
protected:
    ClockText() { g_error.clear(); }
    ~ClockText() override { nuxSetErrorSink(nullptr); }

    // Monday the second of March 2009; tm_year holds the full year here.
    static tm march2(int hour = 13, int minute = 5)
    {
        tm t = {};
        t.tm_year = 2009;
        t.tm_mon = 2;
        t.tm_mday = 2;
        t.tm_wday = 1;
        t.tm_hour = hour;
        t.tm_min = minute;
        return t;
    }
    static std::string word(const char* text, const tm& t = march2())
    {
        return ParseWordFormat(text, &t).GetText();
    }
    static std::string date(const char* format, const tm& t = march2())
    {
        return ParseDateFormat(format, &t).GetText();
    }
    static std::string timeOf(int mode, int hour, int minute)
    {
        const tm t = march2(hour, minute);
        return ParseTimeFormat(mode, &t).GetText();
    }
    void setFormat(const char* dateFormat, const char* timeFormat)
    {
        writeKey(USER_INI, "DateTime", "eDateFormat", dateFormat);
        writeKey(USER_INI, "DateTime", "eTimeFormat", timeFormat);
    }
};

} // namespace

TEST_F(ClockText, EachWordStandsForItsField)
{
    EXPECT_EQ(word("DD"), "02");
    EXPECT_EQ(word("MM"), "03");
    EXPECT_EQ(word("MMM"), "Mar");
    EXPECT_EQ(word("YY"), "09");
    EXPECT_EQ(word("YYYY"), "2009");
    EXPECT_EQ(word("WWW"), "Tue");
}

TEST_F(ClockText, WordsAreComparedWholeAndWithCase)
{
    for (const char* text : {"D", "DDD", "dd", "mm", "MMMM", "Y", "YYY", "www", "WW", "o'clock"})
        EXPECT_EQ(word(text), text);
}

TEST_F(ClockText, TheWeekDayIsShiftedSoThatSundayReadsMon)
{
    const char* const names[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
    for (int day = 0; day < 7; ++day) {
        tm t = march2();
        t.tm_wday = day;
        EXPECT_EQ(word("WWW", t), names[day]);
    }
}

TEST_F(ClockText, EveryMonthHasItsName)
{
    const char* const names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (int month = 0; month < 12; ++month) {
        tm t = march2();
        t.tm_mon = month;
        EXPECT_EQ(word("MMM", t), names[month]);
    }
}

TEST_F(ClockText, AShortYearKeepsItsLeadingZero)
{
    EXPECT_EQ(date("YY-MM-DD"), "09-03-02");
}

TEST_F(ClockText, SeparatorsStayAsTheyAre)
{
    EXPECT_EQ(date("DD/MM/YYYY"), "02/03/2009");
    EXPECT_EQ(date("WWW DD MMM"), "Tue 02 Mar");
    EXPECT_EQ(date("--DD  //"), "--02  //");
    EXPECT_EQ(date(""), "");
    EXPECT_EQ(CalculateSeparator(" a"), 1);
    EXPECT_EQ(CalculateSeparator("-"), 1);
    EXPECT_EQ(CalculateSeparator("/"), 1);
    EXPECT_EQ(CalculateSeparator(""), 0);
    EXPECT_EQ(CalculateSeparator(",-"), 0);
}

TEST_F(ClockText, ACommaIsNoSeparatorSoItsWordIsUnknown)
{
    EXPECT_EQ(date("WWW, DD-MM"), "WWW, 02-03");
}

TEST_F(ClockText, ATextWithoutFieldLettersGivesTheDefaultFormat)
{
    netSetLocalTime(2009, 3, 2, 13, 5, 0);
    setFormat("abc", "0");
    EXPECT_STREQ(GetDateTime().GetText(), "02/03/2009 13:05");
    setFormat("", "0");
    EXPECT_STREQ(GetDateTime().GetText(), "02/03/2009 13:05");
}

TEST_F(ClockText, TheUsersFormatAndModeAreUsed)
{
    netSetLocalTime(2009, 3, 1, 13, 5, 0); // a Sunday
    setFormat("WWW YYYY/MM/DD", "1");
    EXPECT_STREQ(GetDateTime().GetText(), "Mon 2009/03/01 01:05 PM");
    setFormat("D", "7");
    EXPECT_STREQ(GetDateTime().GetText(), "D ");
}

TEST_F(ClockText, TwentyFourHoursAreShownWithTwoDigits)
{
    EXPECT_EQ(timeOf(0, 0, 0), "00:00");
    EXPECT_EQ(timeOf(0, 9, 5), "09:05");
    EXPECT_EQ(timeOf(0, 23, 59), "23:59");
}

TEST_F(ClockText, TheTwelveHourClockTurnsAtOneAndCallsNoonAndMidnightAM)
{
    EXPECT_EQ(timeOf(1, 13, 5), "01:05 PM");
    EXPECT_EQ(timeOf(1, 12, 30), "12:30 AM");
    EXPECT_EQ(timeOf(1, 0, 0), "00:00 AM");
    EXPECT_EQ(timeOf(1, 23, 59), "11:59 PM");
}

TEST_F(ClockText, TheWordsAreInThePresentLanguage)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("Chinese"), 1);
    EXPECT_EQ(timeOf(1, 13, 5), "下午 01:05");
    EXPECT_EQ(timeOf(1, 0, 0), "上午 00:00");
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    EXPECT_EQ(timeOf(1, 13, 5), "01:05 PM");
    EXPECT_EQ(date("WWW DD MMM"), "Di 02 Mär");
    GetLanguageHelper()->SetLanguage("English");
}

TEST_F(ClockText, OtherModesGiveNoTime)
{
    EXPECT_EQ(timeOf(2, 13, 5), "");
    EXPECT_EQ(timeOf(-1, 13, 5), "");
}

TEST_F(ClockText, AFormatOf128CharactersIsReportedAndStillWritten)
{
    nuxSetErrorSink([](const char* line) { g_error += line; });
    const std::string longest(PARSE_STR_MAX - 1, 'x');
    EXPECT_EQ(date(longest.c_str()), longest);
    EXPECT_EQ(g_error, "");
    const std::string tooLong(PARSE_STR_MAX, 'x');
    EXPECT_EQ(date(tooLong.c_str()), tooLong);
    EXPECT_NE(g_error.find("size < PARSE_STR_MAX"), std::string::npos) << g_error;
}
