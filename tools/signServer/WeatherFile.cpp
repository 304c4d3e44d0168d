#include "tools/signServer/WeatherFile.h"
#include "tools/signServer/CityClimate.h"
#include <QXmlStreamReader>

namespace {

bool IsCity(const QXmlStreamAttributes& city, const QString& name)
{
    if (city.value("name").compare(name, Qt::CaseInsensitive) == 0)
        return true;
    for (const QStringView other : city.value("also").split(',')) {
        if (!other.isEmpty() && other.trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

// What is written between the start of a city and its end.
Forecast ReadCity(QXmlStreamReader& xml)
{
    Forecast forecast;
    forecast.fahrenheit = xml.attributes().value("unit") == QLatin1String("US");
    while (xml.readNextStartElement()) {
        const QXmlStreamAttributes at = xml.attributes();
        if (xml.name() == QLatin1String("now")) {
            forecast.condition = at.value("condition").toString();
            forecast.temperature = at.value("temperature").toInt();
            forecast.icon = at.value("icon").toString();
        } else if (xml.name() == QLatin1String("day")) {
            forecast.days.append({at.value("condition").toString(), at.value("low").toString(),
                                  at.value("high").toString(), at.value("icon").toString()});
        }
        xml.skipCurrentElement();
    }
    return forecast;
}

} // namespace

std::optional<Forecast> FindCity(const SignFolder& folder, const QByteArray& city, const QDateTime& now,
                                 bool isWritten)
{
    const QString name = QString::fromUtf8(city).simplified();
    QXmlStreamReader xml(folder.Content("weather.xml"));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("city"))
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (!IsCity(attributes, name))
            continue;
        Forecast forecast = ReadCity(xml);
        forecast.date = now.date();
        if (xml.hasError())
            return std::nullopt;
        if (forecast.days.size() >= Forecast::Days)
            return forecast;
        const CityClimate climate(attributes);
        if (!forecast.days.isEmpty() || isWritten || !climate.IsGood())
            return std::nullopt;
        return climate.At(now.date(), now);
    }
    return std::nullopt;
}
