#include "tools/signServer/StockMarket.h"
#include <QTimeZone>
#include <algorithm>
#include <cmath>

namespace {

constexpr int kOpens = 8 * 60, kCloses = 16 * 60 + 30; // minutes of the day, UTC
constexpr int kSession = kCloses - kOpens;
constexpr int kCent = 100;
constexpr double kSpread = 0.0002; // of the price, between the last trade and bid or ask

// How far prices go in the course of so many days, in days' moves.
constexpr struct
{
    const char* topic;
    double days, moves;
} kTides[] = {{"day", 1, 0.7}, {"week", 6, 1.8}, {"month", 31, 4}, {"year", 300, 10}};

constexpr struct
{
    const char* topic;
    double minutes, moves;
} kWaves[] = {{"hour", 75, 0.45}, {"quarter", 16, 0.2}, {"minute", 3, 0.08}};

bool IsTradingDay(const QDate& day)
{
    const bool isFeast =
        (day.month() == 1 && day.day() == 1) || (day.month() == 12 && (day.day() == 25 || day.day() == 26));
    return day.dayOfWeek() <= Qt::Friday && !isFeast;
}

QDate TradingDayBefore(QDate day)
{
    do
        day = day.addDays(-1);
    while (!IsTradingDay(day));
    return day;
}

// "1.82M" as a number.
double LongNumber(const QString& text)
{
    const QString letters = "KMBT";
    const qsizetype power = text.isEmpty() ? -1 : letters.indexOf(text.back().toUpper());
    const double number = (power < 0 ? text : text.chopped(1)).toDouble();
    return std::clamp(number * std::pow(1000.0, double(power + 1)), 0.0, 1e15);
}

double HalfWave(double share)
{
    return std::sin(share * std::acos(-1.0));
}

} // namespace

StockMarket::StockMarket(const QXmlStreamAttributes& stock)
    : m_chance(stock.value("code").toUtf8()), m_company(stock.value("company").toString()),
      m_base(std::clamp(stock.value("base").toDouble(), 0.0, 1e9)),
      m_share(std::clamp(stock.value("swing").toDouble(), 0.0, 10.0) / 100),
      m_shares(LongNumber(stock.value("shares").toString())),
      m_trades(LongNumber(stock.value("trades").toString()))
{
}

qint64 StockMarket::Rounded(double price) const
{
    return std::max<qint64>(std::llround(price * kCent), 1);
}

qint64 StockMarket::Close(const QDate& day) const
{
    double moves = 0;
    for (const auto& tide : kTides)
        moves += tide.moves * m_chance.Smooth(tide.topic, double(day.toJulianDay()), tide.days);
    return Rounded(m_base * std::exp(moves * m_share));
}

qint64 StockMarket::Open(const QDate& day) const
{
    const double gap = 0.4 * m_share * (2 * m_chance.At("open", day.toJulianDay()) - 1);
    return Rounded(double(Close(TradingDayBefore(day))) / kCent * (1 + gap));
}

// From the open to the close on a way of its own, which is none at either end.
qint64 StockMarket::PriceAt(const QDate& day, int minute, const Ends& ends) const
{
    const double share = double(minute) / kSession;
    double moves = 0;
    for (const auto& wave : kWaves)
        moves += wave.moves *
                 m_chance.Smooth(wave.topic, double(day.toJulianDay()) * kSession + minute, wave.minutes);
    const double way = (double(ends.open) + double(ends.close - ends.open) * share) / kCent;
    return Rounded(way * (1 + moves * m_share * HalfWave(share)));
}

// Most is traded behind the open and before the close.
double StockMarket::TradedUntil(const QDate& day, int minute) const
{
    const double share = double(minute) / kSession;
    const double traded = share + 0.09 * HalfWave(2 * share);
    return m_trades * (0.6 + 0.8 * m_chance.At("volume", day.toJulianDay())) * traded;
}

Quote StockMarket::At(const QDateTime& now) const
{
    const QDateTime utc = now.toUTC();
    const int minuteOfDay = utc.time().msecsSinceStartOfDay() / 60000;
    const bool isToday = IsTradingDay(utc.date()) && minuteOfDay >= kOpens;
    const QDate day = isToday ? utc.date() : TradingDayBefore(utc.date());
    const int minute = isToday ? std::min(minuteOfDay - kOpens, kSession) : kSession;

    const Ends ends = {Open(day), Close(day)};
    qint64 low = ends.open, high = low, price = low;
    for (int i = 1; i <= minute; ++i) {
        price = PriceAt(day, i, ends);
        low = std::min(low, price);
        high = std::max(high, price);
    }
    const qint64 spread = Rounded(double(price) / kCent * kSpread);
    Quote quote;
    quote.company = m_company;
    quote.price = double(price) / kCent;
    quote.previous = double(Close(TradingDayBefore(day))) / kCent;
    quote.open = double(ends.open) / kCent;
    quote.low = double(low) / kCent;
    quote.high = double(high) / kCent;
    quote.bid = double(std::max<qint64>(price - spread, 1)) / kCent;
    quote.ask = double(price + spread) / kCent;
    quote.volume = ShortNumber(TradedUntil(day, minute));
    quote.marketCap = ShortNumber(m_shares * quote.price);
    quote.time = QDateTime(day, QTime(0, 0), QTimeZone::utc()).addSecs((kOpens + minute) * 60LL);
    return quote;
}
