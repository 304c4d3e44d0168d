#include "applets/weatherReader.h"
#include "applets/feed.h"
#include "support/host/language.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <QDate>
#include <QLocale>
#include <QStringList>
#include <cstdlib>

namespace {

enum UNIT { UNIT_CELSIUS = 0, UNIT_FAHRENHEIT = 1 };
constexpr long kHottest = 100000; // beyond it a number is none of a temperature

int toCelsius(int fahrenheit)
{
    return int((fahrenheit - 32) / 1.8);
}

int toFahrenheit(int celsius)
{
    return int(celsius * 1.8 + 32);
}

// The text's leading decimal digits, in the other unit.
QString converted(const QString& text, int (*convert)(int))
{
    const long number = strtol(text.toUtf8().constData(), nullptr, 10);
    return QString::number(convert(int(qBound(-kHottest, number, kHottest))));
}

// In the phone's language, as the clock names them.
QString monthName(const QDate& date)
{
    return qTranslate(QLocale::c().monthName(date.month()).toUtf8().constData());
}

// Feeds name the days as the phone's clock does; what it does not know stays as it was received.
QString dayName(const QString& received)
{
    for (const char* day : {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"}) {
        if (received == QLatin1String(day))
            return qTranslate(day);
    }
    return received;
}

QString dateText(const QDate& date)
{
    return monthName(date) + QString::asprintf(" %02d", date.day());
}

} // namespace

bool WeatherReader::Read(const char* file, int unit, tagMoreDaysInfo& info)
{
    info = tagMoreDaysInfo();
    m_pictures = tagWeatherPictures();
    xmlFile answer;
    const bool isLoaded = feedLoadAnswer(answer, file);
    xmlElement* root = isLoaded ? answer.GetRootElement() : nullptr;
    xmlElement* head = root ? findForecast(root, info) : nullptr;
    if (!head || !fill(head, unit, info))
        return false;
    info.bConnected = info.bSiteFound = true;
    return true;
}

xmlElement* WeatherReader::findForecast(xmlElement* root, tagMoreDaysInfo& info) const
{
    return m_eForm == FORM_PUBLIC ? findPublicForecast(root, info) : findSignageForecast(root, info);
}

xmlElement* WeatherReader::findPublicForecast(xmlElement* root, tagMoreDaysInfo&) const
{
    if (qstrcmp(root->GetName(), "xml_api_reply") != 0)
        return nullptr;
    const xmlElement* weather = root->FindChildElement("weather");
    return weather ? weather->FindChildElement("forecast_information") : nullptr;
}

// The days are looked for first: a head alone is no forecast.
xmlElement* WeatherReader::findSignageForecast(xmlElement* root, tagMoreDaysInfo& info) const
{
    const xmlElement* ndeck =
        qstrcmp(root->GetName(), "norvane") == 0 ? root->FindChildElement("ndeck") : nullptr;
    if (!ndeck || isRefused(ndeck, info))
        return nullptr;
    const xmlElement* weather = ndeck->FindChildElement("weather");
    if (!weather || !weather->FindChildElement("forecast_conditions"))
        return nullptr;
    return weather->FindChildElement("forecast_information");
}

// The one error that means a city which the server does not know.
bool WeatherReader::isRefused(const xmlElement* ndeck, tagMoreDaysInfo& info) const
{
    xmlElement* result = ndeck->FindChildElement("result");
    chString error;
    if (!result || !find(result, "error", error))
        return false;
    nuxTrace(TRACE_NOTE, "weather download error(%s)", error.GetText());
    info.bConnected = error == "get data error";
    return true;
}

// By position: the conditions now, today, tomorrow, the day after.
bool WeatherReader::fill(xmlElement* head, int unit, tagMoreDaysInfo& info)
{
    xmlElement* now = xmlGetNextElement(head);
    xmlElement* today = now ? xmlGetNextElement(now) : nullptr;
    xmlElement* tomorrow = today ? xmlGetNextElement(today) : nullptr;
    xmlElement* after = tomorrow ? xmlGetNextElement(tomorrow) : nullptr;
    if (!after)
        return false;
    fillDates(text(head, "forecast_date"), info);
    const QString system = text(head, "unit_system");
    info.strStatus1 = text(now, "condition");
    info.strCurrentTemp = unit == UNIT_CELSIUS ? text(now, "temp_c") + "c" : text(now, "temp_f") + "F";
    m_pictures.bToday = find(now, "icon", m_pictures.strToday);
    info.strTemperature1 = range(today, system, unit);
    info.strDate1 += " " + dayName(text(today, "day_of_week"));
    info.strTemperature2 = range(tomorrow, system, unit);
    info.strStatus2 = text(tomorrow, "condition");
    info.strDate2 += " " + dayName(text(tomorrow, "day_of_week"));
    find(tomorrow, "icon", m_pictures.strTomorrow);
    info.strTemperature3 = range(after, system, unit);
    info.strStatus3 = text(after, "condition");
    info.strDate3 += " " + dayName(text(after, "day_of_week"));
    return true;
}

void WeatherReader::fillDates(const QString& date, tagMoreDaysInfo& info) const
{
    const QStringList parts = date.split('-');
    const QDate today(parts.value(0).toInt(), parts.value(1).toInt(), parts.value(2).toInt());
    // The last day that there is has none after it.
    if (!today.isValid() || !today.addDays(2).isValid())
        return;
    info.strDate1 = monthName(today) + " " + parts.value(2);
    info.strDate2 = dateText(today.addDays(1));
    info.strDate3 = dateText(today.addDays(2));
}

// Nothing for units that nobody knows.
QString WeatherReader::range(xmlElement* day, const QString& system, int unit) const
{
    const bool isAmerican = system == QLatin1String("US");
    if ((!isAmerican && system != QLatin1String("SI")) || (unit != UNIT_CELSIUS && unit != UNIT_FAHRENHEIT))
        return QString();
    QString low = text(day, "low");
    QString high = text(day, "high");
    const bool isWanted = isAmerican == (unit == UNIT_FAHRENHEIT);
    if (!isWanted) {
        const auto convert = isAmerican ? toCelsius : toFahrenheit;
        low = converted(low, convert);
        high = converted(high, convert);
    }
    const QString letter = unit == UNIT_CELSIUS ? QStringLiteral("c") : QStringLiteral("F");
    return low + letter + "~" + high + letter;
}

bool WeatherReader::find(xmlElement* parent, const char* name, chString& value) const
{
    xmlElement* element = parent->FindChildElement(name);
    if (!element)
        return false;
    if (m_eForm == FORM_PUBLIC)
        value = element->GetAttributeValue("data").GetString();
    else
        PeekValue(element, value);
    return true;
}

// One line, however it was laid out, and not more of it than there is room for.
QString WeatherReader::text(xmlElement* parent, const char* name) const
{
    chString value;
    find(parent, name, value);
    return feedShownText(toQString(value).simplified(), TEXT_LIMIT);
}
