#include "tools/signServer/WeatherReply.h"
#include "tools/signServer/ReplyText.h"
#include <QLocale>
#include <QXmlStreamWriter>
#include <cmath>
#include <functional>

namespace {

// The two formats write a value in two ways.
struct Format
{
    std::function<void(const char*)> open;
    std::function<void(const char*, const QString&)> put;
    std::function<void()> close;
    QString pictureRoot;
};

QString PicturePath(const QString& icon)
{
    return "/ig/images/weather/" + icon + ".gif";
}

void WriteNow(const Forecast& forecast, const Format& format)
{
    const int here = forecast.temperature;
    format.open("current_conditions");
    format.put("condition", forecast.condition);
    format.put("temp_f", QString::number(forecast.fahrenheit ? here : ToFahrenheit(here)));
    format.put("temp_c", QString::number(forecast.fahrenheit ? ToCelsius(here) : here));
    format.put("icon", format.pictureRoot + PicturePath(forecast.icon));
    format.close();
}

void Write(const Forecast& forecast, const Format& format)
{
    format.open("forecast_information");
    format.put("forecast_date", forecast.date.toString("yyyy-MM-dd"));
    format.put("unit_system", forecast.fahrenheit ? "US" : "SI");
    format.close();
    WriteNow(forecast, format);
    for (int i = 0; i < Forecast::Days; ++i) {
        const DayForecast& day = forecast.days[i];
        const int weekDay = forecast.date.addDays(i).dayOfWeek();
        format.open("forecast_conditions");
        format.put("day_of_week", QLocale::c().dayName(weekDay, QLocale::ShortFormat));
        format.put("low", day.low);
        format.put("high", day.high);
        format.put("icon", format.pictureRoot + PicturePath(day.icon));
        format.put("condition", day.condition);
        format.close();
    }
}

} // namespace

int ToFahrenheit(int celsius)
{
    return int(std::lround(celsius * 1.8 + 32));
}

int ToCelsius(int fahrenheit)
{
    return int(std::lround((fahrenheit - 32) / 1.8));
}

QByteArray WeatherForPhone(const std::optional<Forecast>& forecast, const QByteArray& pictureRoot)
{
    if (!forecast)
        return RefusedReply("get data error");
    return NdeckReply([&](QXmlStreamWriter& xml) {
        xml.writeStartElement("weather");
        Write(*forecast, {[&](const char* name) { xml.writeStartElement(name); },
                          [&](const char* name, const QString& text) { xml.writeTextElement(name, text); },
                          [&] { xml.writeEndElement(); }, QString::fromUtf8(pictureRoot)});
        xml.writeEndElement();
    });
}

QByteArray WeatherForPublic(const std::optional<Forecast>& forecast)
{
    QByteArray reply;
    QXmlStreamWriter xml(&reply);
    xml.writeStartDocument();
    xml.writeStartElement("xml_api_reply");
    xml.writeAttribute("version", "1");
    xml.writeStartElement("weather");
    const auto put = [&](const char* name, const QString& text) {
        xml.writeEmptyElement(name);
        xml.writeAttribute("data", text);
    };
    if (forecast)
        Write(*forecast, {[&](const char* name) { xml.writeStartElement(name); }, put,
                          [&] { xml.writeEndElement(); }, QString()});
    else
        put("problem_cause", QString());
    xml.writeEndDocument();
    return reply;
}
