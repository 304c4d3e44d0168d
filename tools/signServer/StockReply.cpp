#include "tools/signServer/StockReply.h"
#include "tools/signServer/ReplyText.h"
#include <QLocale>
#include <QXmlStreamWriter>
#include <cmath>

namespace {

const char* const kUnknown = "N/A";

QString Money(double value)
{
    return std::isnan(value) ? kUnknown : QString::number(value, 'f', 2);
}

QString Signed(double value)
{
    const QString text = Money(std::abs(value));
    if (std::isnan(value))
        return text;
    return (value < 0 && text != "0.00" ? "-" : "+") + text;
}

double Percent(const Quote& quote)
{
    if (std::isnan(quote.previous))
        return quote.previous;
    return quote.previous > 0 ? (quote.price - quote.previous) / quote.previous * 100 : 0;
}

// Without a sign where there is no fall: the phone puts it there.
QString PlainPercent(const Quote& quote)
{
    const QString text = Signed(Percent(quote));
    return text.startsWith('+') ? text.mid(1) : text;
}

} // namespace

QString ShortNumber(double value)
{
    constexpr double kThousand = 1000;
    int power = 0;
    // What would be rounded up to a thousand is one of the next letter.
    for (; value >= kThousand - 0.5 && power < 4; ++power)
        value /= kThousand;
    const int digits = value >= 99.95 ? 0 : value >= 9.995 ? 1 : 2;
    return QString::number(value, 'f', power ? digits : 0) + QStringList{"", "K", "M", "B", "T"}[power];
}

QByteArray StockForPhone(const std::optional<Quote>& known)
{
    const Quote quote = known.value_or(Quote());
    return NdeckReply([&](QXmlStreamWriter& xml) {
        const auto row = [&](const char* title, const QString& value) {
            xml.writeEmptyElement("Menu");
            xml.writeAttribute("title", title);
            xml.writeAttribute("value", known ? value : kUnknown);
        };
        xml.writeStartElement("RootMenu");
        row("Company Name", quote.company);
        row("Last Trade", Money(quote.price));
        row("Change", Signed(quote.price - quote.previous));
        const QString percent = Signed(Percent(quote));
        row("Change in Percent", percent == kUnknown ? percent : percent + "%");
        row("Open", Money(quote.open));
        row("Previous Close", Money(quote.previous));
        row("Day's High", Money(quote.high));
        row("Day's Low", Money(quote.low));
        row("Bid", Money(quote.bid));
        row("Ask", Money(quote.ask));
        row("Volume", quote.volume);
        row("Last Trade Date", quote.time.toString("M/d/yyyy"));
        row("Last Trade Time", QLocale::c().toString(quote.time, "h:mmap"));
        row("Market Cap", quote.marketCap);
        xml.writeEndElement();
    });
}

QByteArray StockForPublic(const std::optional<Quote>& quote)
{
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
    if (quote) {
        put("company", quote->company);
        put("last", Money(quote->price));
        put("high", Money(quote->high));
        put("low", Money(quote->low));
        put("volume", quote->volume);
        put("market_cap", quote->marketCap);
        put("open", Money(quote->open));
        put("y_close", Money(quote->previous));
        put("change", Signed(quote->price - quote->previous));
        put("perc_change", PlainPercent(*quote));
        put("bid", Money(quote->bid));
        put("ask", Money(quote->ask));
        put("current_date_utc", quote->time.toString("yyyyMMdd"));
    }
    xml.writeEndDocument();
    return reply;
}
