#include "tools/signServer/WeatherReply.h"
#include "tools/signServer/ReplyText.h"
#include <QLocale>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <cmath>

namespace {

constexpr int kDays = 3;

int ToFahrenheit(int celsius)
{
    return int(std::lround(celsius * 1.8 + 32));
}

int ToCelsius(int fahrenheit)
{
    return int(std::lround((fahrenheit - 32) / 1.8));
}

bool IsCity(const QXmlStreamReader& xml, const QString& name)
{
    return xml.name() == QLatin1String("city") &&
           xml.attributes().value("name").compare(name, Qt::CaseInsensitive) == 0;
}

} // namespace

int WeatherReply::Find(const QByteArray& city, Forecast& forecast) const
{
    const QString name = QString::fromUtf8(city).simplified();
    QXmlStreamReader xml(m_folder.Content("weather.xml"));
    bool inside = false;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::EndElement && xml.name() == QLatin1String("city") && inside)
            return forecast.days.size() >= kDays ? 1 : 0;
        if (token != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes at = xml.attributes();
        if (IsCity(xml, name)) {
            inside = true;
            forecast.unit = at.value("unit") == QLatin1String("US") ? "US" : "SI";
        } else if (inside && xml.name() == QLatin1String("now")) {
            forecast.condition = at.value("condition").toString();
            forecast.temperature = at.value("temperature").toInt();
            forecast.icon = at.value("icon").toString();
        } else if (inside && xml.name() == QLatin1String("day")) {
            forecast.days.append({at.value("condition").toString(), at.value("low").toString(),
                                  at.value("high").toString(), at.value("icon").toString()});
        }
    }
    return 0;
}

void WeatherReply::Write(const Forecast& forecast, const QString& pictureRoot, const Open& open,
                         const Put& put, const Close& close) const
{
    open("forecast_information");
    put("forecast_date", m_today.toString("yyyy-MM-dd"));
    put("unit_system", forecast.unit);
    close();

    const bool fahrenheit = forecast.unit == "US";
    const int here = forecast.temperature;
    open("current_conditions");
    put("condition", forecast.condition);
    put("temp_f", QString::number(fahrenheit ? here : ToFahrenheit(here)));
    put("temp_c", QString::number(fahrenheit ? ToCelsius(here) : here));
    put("icon", pictureRoot + PicturePath(forecast.icon));
    close();

    for (int i = 0; i < kDays; ++i) {
        const Day& day = forecast.days[i];
        open("forecast_conditions");
        put("day_of_week", QLocale::c().dayName(m_today.addDays(i).dayOfWeek(), QLocale::ShortFormat));
        put("low", day.low);
        put("high", day.high);
        put("icon", pictureRoot + PicturePath(day.icon));
        put("condition", day.condition);
        close();
    }
}

QByteArray WeatherReply::ForPhone(const QByteArray& city, const QByteArray& pictureRoot)
{
    Forecast forecast;
    if (!Find(city, forecast))
        return RefusedReply("get data error");
    return NdeckReply([&](QXmlStreamWriter& xml) {
        xml.writeStartElement("weather");
        Write(
            forecast, QString::fromUtf8(pictureRoot), [&](const char* name) { xml.writeStartElement(name); },
            [&](const char* name, const QString& text) { xml.writeTextElement(name, text); },
            [&] { xml.writeEndElement(); });
        xml.writeEndElement();
    });
}

QByteArray WeatherReply::ForPublic(const QByteArray& city)
{
    QByteArray reply;
    QXmlStreamWriter xml(&reply);
    xml.writeStartDocument();
    xml.writeStartElement("xml_api_reply");
    xml.writeAttribute("version", "1");
    xml.writeStartElement("weather");
    const Put put = [&](const char* name, const QString& text) {
        xml.writeEmptyElement(name);
        xml.writeAttribute("data", text);
    };
    Forecast forecast;
    if (Find(city, forecast))
        Write(
            forecast, QString(), [&](const char* name) { xml.writeStartElement(name); }, put,
            [&] { xml.writeEndElement(); });
    else
        put("problem_cause", QString());
    xml.writeEndDocument();
    return reply;
}
