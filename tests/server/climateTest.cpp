// The cities and stocks of the demonstration: what the shipped files tell, on given days.
#include "places.h"
#include "tools/signServer/CityClimate.h"
#include "tools/signServer/StockFile.h"
#include "tools/signServer/StockMarket.h"
#include "tools/signServer/StockReply.h"
#include "tools/signServer/WeatherFile.h"
#include <QDir>
#include <QMap>
#include <QTimeZone>
#include <QXmlStreamReader>
#include <cmath>
#include <gtest/gtest.h>

namespace {

const SignFolder& demo()
{
    static const SignFolder folder(HX_SOURCE_DIR "/tools/signDemo/content");
    return folder;
}

QDateTime utc(const char* text)
{
    return QDateTime::fromString(text, Qt::ISODate);
}

using Rows = QMap<QByteArray, QXmlStreamAttributes>;

// The elements of that name, each under the value of an attribute.
Rows rowsOf(const char* file, const char* element, const char* attribute)
{
    Rows rows;
    QXmlStreamReader xml(demo().Content(file));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String(element))
            continue;
        const QByteArray name = xml.attributes().value(attribute).toUtf8();
        EXPECT_FALSE(rows.contains(name)) << name.constData();
        rows[name] = xml.attributes();
    }
    EXPECT_FALSE(xml.hasError()) << qPrintable(xml.errorString());
    return rows;
}

const Rows& cities()
{
    static const Rows rows = rowsOf("weather.xml", "city", "name");
    return rows;
}

const Rows& codes()
{
    static const Rows rows = rowsOf("stock.xml", "stock", "code");
    return rows;
}

Forecast weather(const QByteArray& city, const QDateTime& now)
{
    return CityClimate(cities()[city]).At(now.date(), now);
}

Quote quote(const QByteArray& code, const QDateTime& now)
{
    return StockMarket(codes()[code]).At(now);
}

// The mean of low and high over the thirty days from there.
double meanOf(const QByteArray& city, const QDate& from)
{
    double sum = 0;
    for (int i = 0; i < 30; ++i) {
        const Forecast day = weather(city, QDateTime(from.addDays(i), QTime(12, 0), QTimeZone::utc()));
        sum += (day.days[0].low.toInt() + day.days[0].high.toInt()) / 2.0;
    }
    return sum / 30;
}

int wetDays(const QByteArray& city, const QDate& from, int days)
{
    int wet = 0;
    for (int i = 0; i < days; ++i) {
        const QString icon =
            weather(city, QDateTime(from.addDays(i), QTime(12, 0), QTimeZone::utc())).days[0].icon;
        wet += icon == "rain" || icon == "snow" || icon == "storm";
    }
    return wet;
}

} // namespace

TEST(Climate, TwoHundredCitiesHaveAForecastForEveryMonth)
{
    EXPECT_GE(cities().size(), 200);
    const QDir templates(HX_BUILD_DIR "/signageDemo/icons");
    for (const QByteArray& city : cities().keys()) {
        ASSERT_TRUE(CityClimate(cities()[city]).IsGood()) << city.constData();
        for (int month = 1; month <= 12; ++month) {
            const QDateTime now(QDate(2026, month, 15), QTime(12, 0), QTimeZone::utc());
            const Forecast forecast = weather(city, now);
            ASSERT_EQ(forecast.days.size(), 3);
            for (const DayForecast& day : forecast.days) {
                ASSERT_LT(day.low.toInt(), day.high.toInt()) << city.constData();
                ASSERT_GT(day.low.toInt(), -45) << city.constData() << month;
                ASSERT_LT(day.high.toInt(), forecast.fahrenheit ? 120 : 49) << city.constData() << month;
                ASSERT_TRUE(templates.exists(day.icon + ".gif")) << qPrintable(day.icon);
                const bool isSnow = day.icon == "snow" && !forecast.fahrenheit;
                ASSERT_TRUE(!isSnow || day.low.toInt() < 2) << city.constData();
            }
            ASSERT_TRUE(templates.exists(forecast.icon + ".gif"));
        }
    }
}

TEST(Climate, SeasonsAndPlacesDiffer)
{
    const QDate january(2026, 1, 2), july(2026, 7, 2);
    EXPECT_NEAR(meanOf("London", january), 5, 2.5);
    EXPECT_NEAR(meanOf("London", july), 19, 2.5);
    EXPECT_NEAR(meanOf("Sydney", january), 24, 2.5);
    EXPECT_NEAR(meanOf("Sydney", july), 13, 2.5);
    EXPECT_NEAR(meanOf("Singapore", january), 27, 1.5);
    EXPECT_LT(meanOf("Ulaanbaatar", january), -15);
    EXPECT_NEAR(meanOf("New York", july), 77, 5) << "Fahrenheit";
    // Rain comes when it does there.
    EXPECT_EQ(wetDays("Cairo", july, 60), 0);
    EXPECT_GT(wetDays("Mumbai", july, 30), 3 * wetDays("Mumbai", january, 30) + 10);
    const int london = wetDays("London", QDate(2026, 1, 1), 365);
    EXPECT_GT(london, 75);
    EXPECT_LT(london, 150);
}

TEST(Climate, TheFilesAreFoundByNameAndCode)
{
    const QDateTime now = utc("2026-07-04T15:00:00Z");
    EXPECT_EQ(FindCity(demo(), "ZURICH", now)->days[0].high, weather("Zurich", now).days[0].high);
    EXPECT_EQ(FindCity(demo(), "K\xc3\xb6ln", now)->temperature, weather("Cologne", now).temperature);
    EXPECT_FALSE(FindCity(demo(), "Atlantis", now));
    EXPECT_EQ(StockForPhone(FindStock(demo(), "HRBR", now)), StockForPhone(quote("HRBR", now)));
    EXPECT_FALSE(FindStock(demo(), "hrbr", now));
}

TEST(Climate, WhatWasTomorrowIsToday)
{
    for (const char* city : {"London", "Tokyo", "Anchorage"}) {
        QDateTime now = utc("2026-12-29T12:00:00Z");
        for (int i = 0; i < 6; ++i, now = now.addDays(1)) {
            const DayForecast tomorrow = weather(city, now).days[1];
            const DayForecast today = weather(city, now.addDays(1)).days[0];
            EXPECT_EQ(tomorrow.low, today.low);
            EXPECT_EQ(tomorrow.high, today.high);
            EXPECT_EQ(tomorrow.condition, today.condition);
        }
    }
}

TEST(Climate, TheHourOfThePlaceMakesTheTemperatureAndTheMoon)
{
    const Forecast afternoon = weather("London", utc("2026-07-04T15:00:00Z"));
    const Forecast night = weather("London", utc("2026-07-04T01:00:00Z"));
    EXPECT_EQ(afternoon.temperature, afternoon.days[0].high.toInt());
    EXPECT_LT(night.temperature, afternoon.temperature - 4);
    EXPECT_EQ(afternoon.condition, "Sunny");
    EXPECT_EQ(afternoon.icon, "sunny");
    EXPECT_EQ(night.condition, "Clear");
    EXPECT_EQ(night.icon, "clear");
    EXPECT_EQ(night.days[0].condition, "Sunny");
    // Half around the world it is the other way round.
    const int here = weather("Auckland", utc("2026-07-04T15:00:00Z")).temperature;
    EXPECT_LT(here, weather("Auckland", utc("2026-07-04T03:00:00Z")).temperature);
}

TEST(Market, FiftyCodesAreTold)
{
    EXPECT_EQ(codes().size(), 50);
    for (const QByteArray& code : codes().keys()) {
        const Quote now = quote(code, utc("2026-11-20T12:00:00Z"));
        EXPECT_FALSE(now.company.isEmpty());
        EXPECT_TRUE(now.marketCap.endsWith('M') || now.marketCap.endsWith('B')) << qPrintable(now.marketCap);
        EXPECT_TRUE(now.volume.endsWith('K') || now.volume.endsWith('M')) << qPrintable(now.volume);
        EXPECT_LT(now.bid, now.price);
        EXPECT_GT(now.ask, now.price);
    }
}

TEST(Market, ThePreviousCloseIsTheFormerDaysLastTrade)
{
    for (const QByteArray& code : codes().keys()) {
        // Friday's close counts on Monday, Christmas Eve's on the 28th.
        const auto expectClose = [&](const char* close, const char* next) {
            EXPECT_DOUBLE_EQ(quote(code, utc(close)).price, quote(code, utc(next)).previous)
                << code.constData();
        };
        expectClose("2026-11-18T16:30:00Z", "2026-11-19T08:00:00Z");
        expectClose("2026-11-19T23:59:00Z", "2026-11-20T13:37:00Z");
        expectClose("2026-11-20T17:00:00Z", "2026-11-23T09:00:00Z");
        expectClose("2026-12-24T17:00:00Z", "2026-12-28T09:00:00Z");
    }
}

TEST(Market, OutsideTheHoursOfTradeTheLastSessionStands)
{
    const Quote close = quote("HRBR", utc("2026-11-20T16:30:00Z"));
    for (const char* later :
         {"2026-11-20T22:00:00Z", "2026-11-21T12:00:00Z", "2026-11-22T23:00:00Z", "2026-11-23T07:59:00Z"}) {
        EXPECT_EQ(StockForPublic(quote("HRBR", utc(later))), StockForPublic(close)) << later;
    }
    EXPECT_EQ(close.time, utc("2026-11-20T16:30:00Z"));
    EXPECT_NE(StockForPublic(quote("HRBR", utc("2026-11-23T08:00:00Z"))), StockForPublic(close));
}

TEST(Market, LowAndHighEncloseAllThatWasTradedAndTheVolumeGrows)
{
    for (const QByteArray& code : {QByteArray("HRBR"), QByteArray("DRFT"), QByteArray("CAIR")}) {
        double low = 1e9, high = 0, volume = 0;
        for (int minute = 0; minute <= 510; minute += 10) {
            const Quote now = quote(code, utc("2026-11-20T08:00:00Z").addSecs(minute * 60));
            low = std::min({low, now.price, now.open});
            high = std::max({high, now.price, now.open});
            ASSERT_LE(now.low, low);
            ASSERT_GE(now.high, high);
            const double traded = now.volume.chopped(1).toDouble() * (now.volume.endsWith('M') ? 1000 : 1);
            ASSERT_TRUE(minute == 0 || traded >= volume) << minute << qPrintable(now.volume);
            volume = traded;
            ASSERT_EQ(now.time, utc("2026-11-20T08:00:00Z").addSecs(minute * 60));
        }
        EXPECT_GT(high, low);
    }
}

TEST(Market, PricesMoveAsMuchAsTheyAreSaidTo)
{
    // The usual move of a day is about the swing, and nothing runs away in five years.
    double squares = 0;
    int days = 0;
    for (QDateTime now = utc("2022-01-04T17:00:00Z"); now < utc("2027-01-01T00:00:00Z");
         now = now.addDays(7)) {
        const Quote day = quote("HRBR", now);
        squares += std::pow((day.price / day.previous - 1) * 100, 2);
        ++days;
        ASSERT_GT(day.price, 146.85 * 0.7);
        ASSERT_LT(day.price, 146.85 * 1.4);
    }
    const double usual = std::sqrt(squares / days);
    EXPECT_GT(usual, 0.4);
    EXPECT_LT(usual, 2.2);
}

TEST(Market, NumbersAreShortWithThreeDigits)
{
    EXPECT_EQ(ShortNumber(0), "0");
    EXPECT_EQ(ShortNumber(999.4), "999");
    EXPECT_EQ(ShortNumber(999.6), "1.00K");
    EXPECT_EQ(ShortNumber(1816000), "1.82M");
    EXPECT_EQ(ShortNumber(9995000), "10.0M");
    EXPECT_EQ(ShortNumber(99950000), "100M");
    EXPECT_EQ(ShortNumber(12.4e9), "12.4B");
    EXPECT_EQ(ShortNumber(2e12), "2.00T");
}
