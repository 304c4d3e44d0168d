#include "tools/signServer/StockReply.h"
#include "tools/signServer/ReplyText.h"
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kSpread = 0.02;                  // between the last trade and bid or ask
constexpr double kSlowTurn = 420, kFastTurn = 47; // seconds of one round of the two waves
const char* const kUnknown = "N/A";

QString Money(double value)
{
    return QString::number(value, 'f', 2);
}

QString Signed(double value)
{
    const QString text = Money(std::abs(value));
    return (value < 0 && text != "0.00" ? "-" : "+") + text;
}

double Percent(double change, double previous)
{
    return previous > 0 ? change / previous * 100 : 0;
}

} // namespace

double StockReply::Wander(double price, double percent) const
{
    const double turn = 2 * std::acos(-1.0);
    const double seconds = double(m_now.toSecsSinceEpoch());
    const double wave =
        0.7 * std::sin(seconds / kSlowTurn * turn) + 0.3 * std::sin(seconds / kFastTurn * turn);
    return price * (1 + percent / 100 * wave);
}

StockReply::Quote StockReply::Find(const QByteArray& code) const
{
    const QString wanted = QString::fromUtf8(code);
    QXmlStreamReader xml(m_folder.Content("stock.xml"));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes at = xml.attributes();
        if (xml.name() != QLatin1String("stock") || at.value("code") != wanted)
            continue;
        Quote quote;
        quote.known = true;
        quote.company = at.value("company").toString();
        quote.marketCap = at.value("market_cap").toString();
        quote.volume = at.value("volume").toString();
        quote.price = Wander(at.value("price").toDouble(), at.value("swing").toDouble());
        quote.previous = at.value("previous").toDouble();
        quote.open = at.value("open").toDouble();
        quote.low = std::min(at.value("low").toDouble(), quote.price);
        quote.high = std::max(at.value("high").toDouble(), quote.price);
        return quote;
    }
    return Quote();
}

QByteArray StockReply::ForPhone(const QByteArray& code)
{
    const Quote quote = Find(code);
    const double change = quote.price - quote.previous;
    return NdeckReply([&](QXmlStreamWriter& xml) {
        const auto row = [&](const char* title, const QString& value) {
            xml.writeEmptyElement("Menu");
            xml.writeAttribute("title", title);
            xml.writeAttribute("value", quote.known ? value : kUnknown);
        };
        xml.writeStartElement("RootMenu");
        row("Company Name", quote.company);
        row("Last Trade", Money(quote.price));
        row("Change", Signed(change));
        row("Change in Percent", Signed(Percent(change, quote.previous)) + "%");
        row("Open", Money(quote.open));
        row("Previous Close", Money(quote.previous));
        row("Day's High", Money(quote.high));
        row("Day's Low", Money(quote.low));
        row("Bid", Money(quote.price - kSpread));
        row("Ask", Money(quote.price + kSpread));
        row("Volume", quote.volume);
        row("Last Trade Date", m_now.toString("M/d/yyyy"));
        row("Last Trade Time", m_now.toString("hh:mm"));
        row("Market Cap", quote.marketCap);
        xml.writeEndElement();
    });
}

QByteArray StockReply::ForPublic(const QByteArray& code)
{
    const Quote quote = Find(code);
    const double change = quote.price - quote.previous;
    QByteArray reply;
    QXmlStreamWriter xml(&reply);
    const auto put = [&](const char* name, const QString& value) {
        xml.writeEmptyElement(name);
        xml.writeAttribute("data", value);
    };
    xml.writeStartDocument();
    xml.writeStartElement("xml_api_reply");
    xml.writeAttribute("version", "1");
    xml.writeStartElement("finance");
    if (quote.known) {
        put("company", quote.company);
        put("last", Money(quote.price));
        put("high", Money(quote.high));
        put("low", Money(quote.low));
        put("volume", quote.volume);
        put("market_cap", quote.marketCap);
        put("open", Money(quote.open));
        put("y_close", Money(quote.previous));
        put("change", Signed(change));
        put("perc_change", Money(Percent(change, quote.previous)));
        put("bid", Money(quote.price - kSpread));
        put("ask", Money(quote.price + kSpread));
        put("current_date_utc", m_now.toString("yyyyMMdd"));
    }
    xml.writeEndDocument();
    return reply;
}
