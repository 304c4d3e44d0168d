#include "tools/signServer/StockFile.h"
#include "tools/signServer/StockMarket.h"
#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kSpread = 0.02;                  // between the last trade and bid or ask
constexpr double kSlowTurn = 420, kFastTurn = 47; // seconds of one round of the two waves

double Wander(double price, double percent, const QDateTime& now)
{
    const double turn = 2 * std::acos(-1.0);
    const double seconds = double(now.toSecsSinceEpoch());
    const double wave =
        0.7 * std::sin(seconds / kSlowTurn * turn) + 0.3 * std::sin(seconds / kFastTurn * turn);
    return price * (1 + percent / 100 * wave);
}

Quote WrittenQuote(const QXmlStreamAttributes& at, const QDateTime& now)
{
    Quote quote;
    quote.company = at.value("company").toString();
    quote.marketCap = at.value("market_cap").toString();
    quote.volume = at.value("volume").toString();
    quote.price = Wander(at.value("price").toDouble(), at.value("swing").toDouble(), now);
    quote.previous = at.value("previous").toDouble();
    quote.open = at.value("open").toDouble();
    quote.low = std::min(at.value("low").toDouble(), quote.price);
    quote.high = std::max(at.value("high").toDouble(), quote.price);
    quote.bid = quote.price - kSpread;
    quote.ask = quote.price + kSpread;
    quote.time = now;
    return quote;
}

} // namespace

std::optional<Quote> FindStock(const SignFolder& folder, const QByteArray& code, const QDateTime& now,
                               bool isWritten)
{
    const QString wanted = QString::fromUtf8(code);
    QXmlStreamReader xml(folder.Content("stock.xml"));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes at = xml.attributes();
        if (xml.name() != QLatin1String("stock") || at.value("code") != wanted)
            continue;
        const StockMarket market(at);
        if (!market.IsGood())
            return WrittenQuote(at, now);
        return isWritten ? std::nullopt : std::make_optional(market.At(now));
    }
    return std::nullopt;
}
