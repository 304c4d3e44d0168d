// What the answers of both sources become.
#include "applets/weatherReader.h"
#include "support/host/language.h"
#include "tests/applets_weather/weatherStand.h"

namespace {

const char* const kFile = "/tmp/Weather-London.xml";

class WeatherAnswer : public WeatherStand
{
protected:
    bool read(const QByteArray& answer, int unit = 0, WeatherReader::FORM form = WeatherReader::FORM_PUBLIC)
    {
        writeFile(kFile, answer);
        return again(unit, form);
    }
    bool again(int unit, WeatherReader::FORM form)
    {
        WeatherReader reader(form);
        const bool isGood = reader.Read(kFile, unit, info);
        pictures = reader.Pictures();
        return isGood;
    }
    bool readSignage(const QByteArray& answer, int unit = 0)
    {
        return read(answer, unit, WeatherReader::FORM_SIGNAGE);
    }
    // "connected found", each 1 or 0.
    QString flags() const { return QString("%1 %2").arg(info.bConnected).arg(info.bSiteFound); }
    QString ranges() const
    {
        return info.strTemperature1 + "|" + info.strTemperature2 + "|" + info.strTemperature3;
    }
    QString dates() const { return info.strDate1 + "|" + info.strDate2 + "|" + info.strDate3; }
    static QByteArray with(QByteArray answer, const QByteArray& before, const QByteArray& after)
    {
        EXPECT_TRUE(answer.contains(before));
        return answer.replace(before, after);
    }

    tagMoreDaysInfo info;
    tagWeatherPictures pictures;
};

} // namespace

TEST_F(WeatherAnswer, ANewRecordHasNoTextsAndNeitherFlag)
{
    EXPECT_EQ(flags(), "0 0");
    EXPECT_EQ(ranges() + dates() + info.strStatus1 + info.strCurrentTemp, "||||");
}

TEST_F(WeatherAnswer, ThePublicFeedGoesByPositionAndNotByName)
{
    ASSERT_TRUE(read(publicAnswer()));
    EXPECT_EQ(flags(), "1 1");
    EXPECT_EQ(info.strStatus1, "Rain") << "the condition now, not that of the day";
    EXPECT_EQ(info.strCurrentTemp, "8c");
    EXPECT_EQ(ranges(), "4c~11c|6c~12c|-3c~9c");
    EXPECT_EQ(dates(), "November 21 Sat|November 22 Sun|November 23 Mon");
    EXPECT_EQ(info.strStatus2 + "|" + info.strStatus3, "Cloudy|Sunny");
    EXPECT_TRUE(pictures.bToday);
    EXPECT_STREQ(pictures.strToday.GetText(), "/t.gif");
    EXPECT_STREQ(pictures.strTomorrow.GetText(), "/m.gif");
    EXPECT_EQ(info.strSpare2 + info.strSpare3, "");
}

TEST_F(WeatherAnswer, SignageWritesTheSameAsTexts)
{
    ASSERT_TRUE(readSignage(signageAnswer()));
    EXPECT_EQ(flags(), "1 1");
    EXPECT_EQ(info.strStatus1, "Fog & mist");
    EXPECT_EQ(info.strCurrentTemp, "4c");
    EXPECT_EQ(ranges(), "0c~10c|0c~10c|-20c~11c") << "cut off towards zero";
    EXPECT_EQ(dates(), "December 31 Thu|January 01 Fri|January 02 Sat") << "a new year";
    EXPECT_STREQ(pictures.strToday.GetText(), "http://127.0.0.1:9/t.gif");
    EXPECT_FALSE(read(signageAnswer())) << "each source has its own form";
    EXPECT_FALSE(readSignage(publicAnswer()));
}

TEST_F(WeatherAnswer, RangesAreInTheUnitThatIsWanted)
{
    const QByteArray american = with(publicAnswer(), "\"SI\"", "\"US\"");
    ASSERT_TRUE(read(publicAnswer(), 1));
    EXPECT_EQ(info.strCurrentTemp, "46F");
    EXPECT_EQ(ranges(), "39F~51F|42F~53F|26F~48F");
    ASSERT_TRUE(read(with(publicAnswer(), "low data=\"-3\"", "low data=\"-19\""), 1));
    EXPECT_EQ(ranges(), "39F~51F|42F~53F|-2F~48F") << "cut off towards zero";
    ASSERT_TRUE(read(american, 1));
    EXPECT_EQ(ranges(), "4F~11F|6F~12F|-3F~9F");
    ASSERT_TRUE(read(american, 0));
    EXPECT_EQ(ranges(), "-15c~-11c|-14c~-11c|-19c~-12c");
    ASSERT_TRUE(read(publicAnswer(), 2));
    EXPECT_EQ(info.strCurrentTemp, "46F");
    EXPECT_EQ(ranges(), "||");
    ASSERT_TRUE(read(with(publicAnswer(), "\"SI\"", "\"si\"")));
    EXPECT_EQ(ranges(), "||");
    EXPECT_EQ(flags(), "1 1");
}

TEST_F(WeatherAnswer, NumbersThatAreNoneConvertAsZeroAndHugeOnesStayInBounds)
{
    const QByteArray odd = with(with(publicAnswer(), "low data=\"4\"", "low data=\"hot\""),
                                "high data=\"11\"", "high data=\"99999999999999999999\"");
    ASSERT_TRUE(read(odd, 1));
    EXPECT_EQ(info.strTemperature1, "32F~180032F");
    ASSERT_TRUE(read(with(publicAnswer(), "low data=\"4\"", "low data=\"010\""), 1));
    EXPECT_EQ(info.strTemperature1, "50F~51F") << "always decimal";
}

TEST_F(WeatherAnswer, DatesGoOverMonthsAndLeapDays)
{
    ASSERT_TRUE(read(with(publicAnswer(), "2026-11-21", "2028-2-28")));
    EXPECT_EQ(dates(), "February 28 Sat|February 29 Sun|March 01 Mon");
    ASSERT_TRUE(read(with(publicAnswer(), "2026-11-21", "2026-6-9")));
    EXPECT_EQ(dates(), "June 9 Sat|June 10 Sun|June 11 Mon") << "today as it was received";
    ASSERT_TRUE(read(with(publicAnswer(), "2026-11-21", "2026-11-05")));
    EXPECT_EQ(dates(), "November 05 Sat|November 06 Sun|November 07 Mon");
    ASSERT_TRUE(read(with(publicAnswer(), "2026-11-21", "2026-13-45")));
    EXPECT_EQ(dates(), " Sat| Sun| Mon");
    ASSERT_TRUE(read(with(publicAnswer(), "2026-11-21", "2147483647-12-31")));
    EXPECT_EQ(dates(), " Sat| Sun| Mon") << "a day without one after it";
    ASSERT_TRUE(read(with(publicAnswer(), "forecast_date", "other")));
    EXPECT_EQ(dates(), " Sat| Sun| Mon");
}

TEST_F(WeatherAnswer, MonthsAndDaysAreNamedInTheLanguageOfThePhone)
{
    GetLanguageHelper()->SetLanguage("German");
    ASSERT_TRUE(read(with(publicAnswer(), "2026-11-21", "2026-12-30")));
    EXPECT_EQ(dates(), "Dezember 30 Sa|Dezember 31 So|Januar 01 Mo");
    ASSERT_TRUE(readSignage(signageAnswer()));
    EXPECT_EQ(dates(), "Dezember 31 Do|Januar 01 Fr|Januar 02 Sa");
    ASSERT_TRUE(read(with(with(publicAnswer(), "\"Sat\"", "\"Delete\""), "\"Sun\"", "\"sun\"")));
    EXPECT_EQ(dates(), "November 21 Delete|November 22 sun|November 23 Mo") << "no day that the phone knows";
}

TEST_F(WeatherAnswer, WithoutAForecastNeitherFlagIsSet)
{
    EXPECT_FALSE(read("<xml_api_reply><weather><problem_cause data=\"\"/></weather></xml_api_reply>"));
    EXPECT_EQ(flags(), "0 0");
    EXPECT_FALSE(readSignage("<norvane><ndeck><weather><forecast_information/></weather></ndeck></norvane>"));
    EXPECT_EQ(flags(), "0 0");
    EXPECT_FALSE(readSignage("<norvane><ndeck><weather><forecast_conditions/></weather></ndeck></norvane>"));
    EXPECT_EQ(flags(), "0 0");
}

TEST_F(WeatherAnswer, WhatCannotBeReadIsNoConnection)
{
    EXPECT_FALSE(again(0, WeatherReader::FORM_PUBLIC)) << "no file";
    for (const char* text :
         {"", "<", "<other/>", "<xml_api_reply/>", "<norvane/>", "<norvane><ndeck/></norvane>"}) {
        info.bConnected = info.bSiteFound = true;
        EXPECT_FALSE(read(text)) << text;
        EXPECT_EQ(flags(), "0 0") << text;
        info.bConnected = info.bSiteFound = true;
        EXPECT_FALSE(readSignage(text)) << text;
        EXPECT_EQ(flags(), "0 0") << text;
    }
}

TEST_F(WeatherAnswer, OneErrorOfTheSignageServerMeansAnUnknownCity)
{
    const char* const report = "<norvane><ndeck><result><error>%1</error></result></ndeck></norvane>";
    EXPECT_FALSE(readSignage(QString(report).arg("get data error").toUtf8()));
    EXPECT_EQ(flags(), "1 0");
    EXPECT_TRUE(traces().contains("weather download error(get data error)"));
    EXPECT_FALSE(readSignage(QString(report).arg("wrong key").toUtf8()));
    EXPECT_EQ(flags(), "0 0");
    EXPECT_TRUE(traces().contains("weather download error(wrong key)"));
}

TEST_F(WeatherAnswer, TheDaysOfTheSignageServerAreKnownByTheirName)
{
    EXPECT_FALSE(readSignage(with(signageAnswer(), "forecast_conditions", "day")));
    EXPECT_FALSE(info.bSiteFound);
    ASSERT_TRUE(readSignage(with(signageAnswer(), "current_conditions", "now")));
}

TEST_F(WeatherAnswer, TooFewPartsAreNoForecast)
{
    QByteArray answer = publicAnswer();
    for (int parts = 4; parts > 0; --parts) {
        const int last = qMax(answer.lastIndexOf("<day>"), answer.lastIndexOf("<now>"));
        answer = answer.left(last) + "</weather></xml_api_reply>";
        EXPECT_FALSE(read(answer)) << parts;
        EXPECT_EQ(flags(), "0 0");
        EXPECT_EQ(ranges() + dates(), "||||");
        EXPECT_EQ(answer.contains("<now>"), parts > 1);
    }
}

TEST_F(WeatherAnswer, MissingValuesAreEmpty)
{
    ASSERT_TRUE(
        read("<xml_api_reply><weather><forecast_information/><a/><b/><c/><d/></weather></xml_api_reply>"));
    EXPECT_EQ(flags(), "1 1");
    EXPECT_EQ(info.strCurrentTemp, "c");
    EXPECT_FALSE(pictures.bToday);
}

TEST_F(WeatherAnswer, TextsAreOneShortLine)
{
    ASSERT_TRUE(read(with(publicAnswer(), "\"Rain\"", "\" a&#10;b&#9;c" + QByteArray(3000, 'x') + "\"")));
    EXPECT_EQ(info.strStatus1.left(6), "a b cx");
    ASSERT_TRUE(read(with(publicAnswer(), "\"Rain\"",
                          "\"a\xe2\x80\xae"
                          "b\"")));
    EXPECT_EQ(info.strStatus1, "a b") << "nothing turns the direction of what stands behind it";
    ASSERT_TRUE(read(with(publicAnswer(), "\"Rain\"", "\" a&#10;b&#9;c" + QByteArray(3000, 'x') + "\"")));
    EXPECT_EQ(info.strStatus1.size(), int(WeatherReader::TEXT_LIMIT));
    const QByteArray last(WeatherReader::TEXT_LIMIT - 1, 'x');
    ASSERT_TRUE(read(with(publicAnswer(), "\"Rain\"", "\"" + last + "\xf0\x9f\x8c\xa7\"")));
    EXPECT_EQ(info.strStatus1, QString(last)) << "no half of a letter";
}
