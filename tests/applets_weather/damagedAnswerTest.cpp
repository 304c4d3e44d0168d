// Thousands of damaged answers, one after the other through one reader: whatever comes of one, it is a
// forecast within its bounds or none at all, and an answer that is whole reads as ever.
#include "applets/feed.h"
#include "applets/weatherReader.h"
#include "tests/applets_weather/weatherStand.h"
#include "tests/kit/plain/damage.h"
#include <QRegularExpression>

namespace {

const char* const kWhole = "/tmp/whole.xml";
const char* const kDamaged = "/tmp/damaged.xml";
constexpr int kReadable = 10; // one of so many at least
constexpr int kUnits = 3;     // the third is nobody's
constexpr int kHottest = 180032;
constexpr int kLongestRange = 2 * WeatherReader::TEXT_LIMIT + 3;
constexpr int kLongestDate = 2 * WeatherReader::TEXT_LIMIT + 12; // with the name of a month

using Form = WeatherReader::FORM;
using Harmed = kit::Damage::tagHarmed;

struct tagRead
{
    bool bGood = false;
    tagMoreDaysInfo info;
    tagWeatherPictures pictures;
};

QStringList datesOf(const tagMoreDaysInfo& info)
{
    return {info.strDate1, info.strDate2, info.strDate3};
}

QStringList rangesOf(const tagMoreDaysInfo& info)
{
    return {info.strTemperature1, info.strTemperature2, info.strTemperature3};
}

// Conditions and temperature.
QStringList linesOf(const tagMoreDaysInfo& info)
{
    return {info.strStatus1, info.strStatus2, info.strStatus3, info.strCurrentTemp};
}

QStringList textsOf(const tagMoreDaysInfo& info)
{
    return datesOf(info) + rangesOf(info) + linesOf(info) + QStringList{info.strSpare2, info.strSpare3};
}

bool isWithin(const QStringList& texts, qsizetype most)
{
    return std::all_of(texts.begin(), texts.end(),
                       [most](const QString& text) { return text.size() <= most; });
}

bool isPlain(QChar letter)
{
    const QChar::Category kind = letter.category();
    return kind != QChar::Other_Control && kind != QChar::Other_Format && kind != QChar::Separator_Line &&
           kind != QChar::Separator_Paragraph;
}

// One line of whole letters.
bool isLine(const QString& text)
{
    return text.isValidUtf16() && std::all_of(text.begin(), text.end(), isPlain);
}

QString letterOf(int unit)
{
    return unit == 0 ? "c" : "F";
}

// Nothing, or two texts with the unit's letter.
bool isRange(const QString& text, int unit)
{
    const QRegularExpression range(QString("^.*%1~.*%1$").arg(letterOf(unit)));
    return text.isEmpty() || range.match(text).hasMatch();
}

// Two whole numbers of temperatures that there might be.
bool isConverted(const QString& text, int unit)
{
    const QRegularExpression range(QString("^(-?\\d{1,6})%1~(-?\\d{1,6})%1$").arg(letterOf(unit)));
    const QRegularExpressionMatch found = range.match(text);
    return found.hasMatch() && qAbs(found.captured(1).toInt()) <= kHottest &&
           qAbs(found.captured(2).toInt()) <= kHottest;
}

// A month with a day, or neither; then a blank and what the answer says of the day.
bool isDate(const QString& text, const QString& weekday)
{
    const QRegularExpression date(
        "^((January|February|March|April|May|June|July|August|September|October|November|"
        "December) (0[1-9]|[12]\\d|3[01]))? " +
        weekday + "$");
    return date.match(text).hasMatch();
}

class DamagedWeather : public WeatherStand
{
protected:
    tagRead read(WeatherReader& reader, const char* file, int unit) const
    {
        tagRead read;
        read.info.strStatus1 = "as before";
        read.info.bConnected = true;
        read.bGood = reader.Read(file, unit, read.info);
        read.pictures = reader.Pictures();
        return read;
    }
    void expectForecast(const tagRead& read, const Harmed& answer, int unit)
    {
        const tagMoreDaysInfo& info = read.info;
        ASSERT_LE(answer.text.size(), FEED_ANSWER_LIMIT);
        ASSERT_TRUE(info.bConnected && info.bSiteFound);
        ASSERT_TRUE(isWithin(linesOf(info), WeatherReader::TEXT_LIMIT + 1));
        ASSERT_TRUE(isWithin(rangesOf(info), kLongestRange));
        ASSERT_TRUE(isWithin(datesOf(info), kLongestDate));
        ASSERT_TRUE(info.strSpare2.isEmpty() && info.strSpare3.isEmpty());
        ASSERT_TRUE(info.strCurrentTemp.endsWith(letterOf(unit)));
        for (const QString& text : textsOf(info))
            ASSERT_TRUE(isLine(text)) << qPrintable(text);
        for (const QString& text : rangesOf(info))
            ASSERT_TRUE(unit > 1 ? text.isEmpty() : isRange(text, unit)) << qPrintable(text);
        for (const QString& text : {info.strDate2, info.strDate3})
            ASSERT_TRUE(isDate(text, ".*")) << qPrintable(text);
        ASSERT_TRUE(read.pictures.bToday || read.pictures.strToday.IsEmpty());
    }
    static void expectNone(const tagRead& read, bool mayBeConnected)
    {
        ASSERT_EQ(textsOf(read.info).join(""), "");
        ASSERT_FALSE(read.info.bSiteFound);
        ASSERT_TRUE(mayBeConnected || !read.info.bConnected);
    }
    // What one wrong number leaves alone.
    static void expectOnlyOneChange(const tagRead& read, const tagRead& whole)
    {
        const QStringList now = linesOf(read.info) + rangesOf(read.info);
        const QStringList before = linesOf(whole.info) + rangesOf(whole.info);
        int changes = datesOf(read.info) != datesOf(whole.info);
        for (qsizetype i = 0; i < now.size(); ++i)
            changes += now[i] != before[i];
        ASSERT_LE(changes, 1);
        for (const auto date : {&tagMoreDaysInfo::strDate2, &tagMoreDaysInfo::strDate3})
            ASSERT_TRUE(isDate(read.info.*date, (whole.info.*date).section(' ', -1)))
                << qPrintable(read.info.*date);
    }
    void expect(const tagRead& read, const Harmed& answer, const tagRead& whole, int unit, bool isConverting)
    {
        // What does not end was not sent to its end.
        ASSERT_FALSE(read.bGood && answer.isOnly(kit::Harm::Cut));
        ASSERT_TRUE(read.bGood || !whole.bGood || !answer.isOnly(kit::Harm::Number));
        ASSERT_FALSE(read.bGood && !whole.bGood);
        if (!read.bGood)
            return expectNone(read, !whole.bGood);
        ASSERT_NO_FATAL_FAILURE(expectForecast(read, answer, unit));
        if (!answer.isOnly(kit::Harm::Number))
            return;
        ASSERT_NO_FATAL_FAILURE(expectOnlyOneChange(read, whole));
        for (const QString& text : rangesOf(read.info))
            ASSERT_TRUE(!isConverting || isConverted(text, unit)) << qPrintable(text);
    }
    static void expectSame(const tagRead& read, const tagRead& whole)
    {
        ASSERT_EQ(read.bGood, whole.bGood);
        ASSERT_EQ(textsOf(read.info), textsOf(whole.info));
        ASSERT_EQ(read.info.bConnected, whole.info.bConnected);
        ASSERT_EQ(read.pictures.bToday, whole.pictures.bToday);
        ASSERT_STREQ(read.pictures.strToday.GetText(), whole.pictures.strToday.GetText());
        ASSERT_STREQ(read.pictures.strTomorrow.GetText(), whole.pictures.strTomorrow.GetText());
    }
    // foreignUnit: whose temperatures are converted.
    void harm(Form form, const QByteArray& answer, int foreignUnit, int count)
    {
        writeFile(kWhole, answer);
        WeatherReader reader(form);
        tagRead whole[kUnits];
        for (int unit = 0; unit < kUnits; ++unit)
            whole[unit] = read(reader, kWhole, unit);
        int forecasts = 0;
        for (int i = 0; i < count && !HasFatalFailure(); ++i) {
            const Harmed harmed = damage.harmed(answer);
            const int unit = damage.draw(kUnits);
            ASSERT_TRUE(kit::Damage::write(hostPath(kDamaged), harmed.text));
            const tagRead damaged = read(reader, kDamaged, unit);
            forecasts += damaged.bGood;
            expect(damaged, harmed, whole[unit], unit, unit == foreignUnit);
            EXPECT_FALSE(HasFatalFailure()) << "answer " << i << ", unit " << unit << ":\n"
                                            << harmed.text.left(4000).constData();
            if (!HasFatalFailure())
                expectSame(read(reader, kWhole, unit), whole[unit]);
        }
        // Most harms lead only so far as to the first tag that is none.
        EXPECT_TRUE(!whole[0].bGood || HasFailure() || forecasts > count / kReadable) << forecasts;
    }

    kit::Damage damage;
};

} // namespace

TEST_F(DamagedWeather, OfThePublicFeedIsAForecastWithinItsBoundsOrNone)
{
    harm(WeatherReader::FORM_PUBLIC, publicAnswer(), 1, kit::Damage::count());
}

TEST_F(DamagedWeather, OfTheSignageServerIsAForecastWithinItsBoundsOrNone)
{
    harm(WeatherReader::FORM_SIGNAGE, signageAnswer(), 0, kit::Damage::count());
}

TEST_F(DamagedWeather, ReportOfAnErrorNeverBecomesAForecast)
{
    harm(WeatherReader::FORM_SIGNAGE,
         "<norvane><ndeck><result><error>get data error</error></result></ndeck></norvane>", -1,
         kit::Damage::count() / 10);
}

TEST_F(DamagedWeather, ListOfSourcesGivesAWholeAddressOrNone)
{
    const QByteArray whole = "<WeatherSource><other title=\"Google\" address=\"http://o:1/\"/>"
                             "<source title=\"Yes\" address=\"http://y:2/\"/>"
                             "<source title=\"Google\" address=\"http://127.0.0.1:6090/ig/api?w=#city\"/>"
                             "</WeatherSource>";
    writeFile(kWhole, whole);
    const auto find = [](const char* file, chString& address) {
        address = "as before";
        return feedSourceAddress(file, "WeatherSource", "source", FEED_PUBLIC_TITLE, address);
    };
    for (int i = 0; i < kit::Damage::count() && !HasFailure(); ++i) {
        const Harmed list = damage.harmed(whole);
        ASSERT_TRUE(kit::Damage::write(hostPath(kDamaged), list.text));
        chString address;
        const FEED_SOURCE found = find(kDamaged, address);
        EXPECT_TRUE(found == FEED_SOURCE_FOUND || address == "as before");
        EXPECT_TRUE(!list.isOnly(kit::Harm::Cut) || found == FEED_SOURCE_NO_FILE);
        EXPECT_TRUE(!list.isOnly(kit::Harm::Number) || found == FEED_SOURCE_FOUND);
        EXPECT_LE(address.GetLength(), qMax<qsizetype>(list.text.size(), 9));
        EXPECT_FALSE(HasFailure()) << "list " << i << ":\n" << list.text.left(4000).constData();
        EXPECT_EQ(find(kWhole, address), FEED_SOURCE_FOUND);
        EXPECT_STREQ(address.GetText(), "http://127.0.0.1:6090/ig/api?w=#city");
    }
}
