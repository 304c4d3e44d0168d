#include "tools/signServer/FeedGateway.h"
#include <QTimeZone>
#include <cmath>
#include <limits>

namespace {

constexpr qsizetype kLongestName = 100; // bytes of a city or a code
constexpr double kLargestAmount = 1e16; // ten thousand "T"
constexpr double kMostDegrees = 360;
constexpr double kFarthestCold = -150, kFarthestHot = 150;
constexpr qint64 kMillisecondsFrom = 100000000000; // seconds of the year 5138

const char* const kDayFields[] = {"day.low", "day.high", "day.code"};

double NumberOf(const NamedTexts& texts, const QByteArray& name)
{
    bool isNumber = false;
    const double number = texts.value(name).toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? number : std::numeric_limits<double>::quiet_NaN();
}

bool IsTemperature(double value)
{
    return value > kFarthestCold && value < kFarthestHot;
}

// A number is made short, a text stays; what is not there is not known.
QString AmountOf(const NamedTexts& texts, const char* name)
{
    const double number = NumberOf(texts, name);
    if (number > kLargestAmount)
        return "N/A";
    if (!std::isnan(number))
        return ShortNumber(std::max(number, 0.0));
    return texts.value(name).isEmpty() ? QString("N/A") : texts.value(name);
}

// Seconds or milliseconds since 1970, or a time as in "2026-11-21T14:05:00Z".
QDateTime TimeOf(const QString& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (isNumber && std::abs(number) < 1e15)
        return QDateTime::fromMSecsSinceEpoch(
            qint64(number) > kMillisecondsFrom ? qint64(number) : qint64(number * 1000), QTimeZone::utc());
    return QDateTime::fromString(text, Qt::ISODate).toUTC();
}

} // namespace

FeedGateway::FeedGateway(const GatewayPlan& plan, RequestLog& log)
    : m_plan(plan), m_places(m_plan.Place(), "latitude", 1, m_client, log),
      m_weather(m_plan.Weather(), "temperature", Forecast::Days, m_client, log),
      m_stock(m_plan.Stock(), "price", 1, m_client, log)
{
}

void FeedGateway::FindCity(const QByteArray& city, const QDateTime& now, const WeatherDone& done)
{
    const QByteArray name = QString::fromUtf8(city).simplified().toCaseFolded().toUtf8();
    if (name.isEmpty() || name.size() > kLongestName) {
        done({true, std::nullopt});
        return;
    }
    m_places.Ask(name, {{"city", name}}, [this, now, done](const UpstreamResult& place) {
        if (place.values)
            FindForecast(*place.values, now, done);
        else
            done({place.isAnswer, std::nullopt});
    });
}

void FeedGateway::FindForecast(const NamedTexts& place, const QDateTime& now, const WeatherDone& done)
{
    const double latitude = NumberOf(place, "latitude"), longitude = NumberOf(place, "longitude");
    if (!(std::abs(latitude) <= kMostDegrees && std::abs(longitude) <= kMostDegrees)) {
        done({true, std::nullopt});
        return;
    }
    const QByteArray north = QByteArray::number(latitude, 'f', 4),
                     east = QByteArray::number(longitude, 'f', 4);
    m_weather.Ask(north + ' ' + east, {{"latitude", north}, {"longitude", east}},
                  [this, now, done](const UpstreamResult& answer) {
                      const auto forecast =
                          answer.values ? ForecastOf(*answer.values, now.date()) : std::nullopt;
                      // A known place without a forecast is the service's fault, not the user's.
                      done({forecast.has_value(), forecast});
                  });
}

std::optional<Forecast> FeedGateway::ForecastOf(const NamedTexts& texts, const QDate& today) const
{
    const double here = NumberOf(texts, "temperature");
    if (!IsTemperature(here))
        return std::nullopt;
    Forecast forecast;
    forecast.fahrenheit = m_plan.IsFahrenheit();
    forecast.temperature = int(std::lround(here));
    const SkyName sky = m_plan.SkyOf(texts.value("code"));
    forecast.condition = sky.condition;
    forecast.icon = sky.icon;
    const QDate first = QDate::fromString(texts.value("date").left(10), Qt::ISODate);
    forecast.date = first.isValid() ? first : today;
    for (int i = 0; i < Forecast::Days; ++i) {
        const QByteArray number = '.' + QByteArray::number(i);
        const double low = NumberOf(texts, kDayFields[0] + number);
        const double high = NumberOf(texts, kDayFields[1] + number);
        if (!IsTemperature(low) || !IsTemperature(high))
            return std::nullopt;
        const SkyName daySky = m_plan.SkyOf(texts.value(kDayFields[2] + number));
        forecast.days.append({daySky.condition, QString::number(std::lround(low)),
                              QString::number(std::lround(high)), daySky.icon});
    }
    return forecast;
}

void FeedGateway::FindStock(const QByteArray& code, const QDateTime& now, const StockDone& done)
{
    if (code.isEmpty() || code.size() > kLongestName) {
        done({true, std::nullopt});
        return;
    }
    m_stock.Ask(code, {{"code", code}}, [code, now, done](const UpstreamResult& answer) {
        if (answer.values && !std::isnan(NumberOf(*answer.values, "price")))
            done({true, QuoteOf(*answer.values, code, now)});
        else
            done({answer.isAnswer, std::nullopt});
    });
}

Quote FeedGateway::QuoteOf(const NamedTexts& texts, const QByteArray& code, const QDateTime& now)
{
    Quote quote;
    const QString company = texts.value("company");
    quote.company = company.isEmpty() ? QString::fromUtf8(code) : company;
    quote.marketCap = AmountOf(texts, "market_cap");
    quote.volume = AmountOf(texts, "volume");
    quote.price = NumberOf(texts, "price");
    quote.previous = NumberOf(texts, "previous");
    quote.open = NumberOf(texts, "open");
    quote.low = NumberOf(texts, "low");
    quote.high = NumberOf(texts, "high");
    quote.bid = NumberOf(texts, "bid");
    quote.ask = NumberOf(texts, "ask");
    const QDateTime time = TimeOf(texts.value("time"));
    quote.time = time.isValid() ? time : now;
    return quote;
}
