#pragma once
// Forecasts from weather.xml, in the format of the signage server and in that of the public feed:
//
//   <weather>
//     <city name="London" unit="SI">                     unit of the numbers: SI Celsius, US Fahrenheit
//       <now condition="Rain" temperature="8" icon="rain"/>
//       <day condition="Rain" low="4" high="11" icon="rain"/>   today, then tomorrow and the day after
//     </city>
//   </weather>
//
// The first day is the server's today. A city is found without regard to case.
#include "tools/signServer/SignFolder.h"
#include <QDate>
#include <QVector>
#include <functional>

class WeatherReply
{
public:
    WeatherReply(const SignFolder& folder, const QDate& today) : m_folder(folder), m_today(today) {}

    // pictureRoot: what stands in front of "/ig/images/weather/", as "http://host:port".
    QByteArray ForPhone(const QByteArray& city, const QByteArray& pictureRoot);
    QByteArray ForPublic(const QByteArray& city);

private:
    struct Day
    {
        QString condition, low, high, icon;
    };
    struct Forecast
    {
        QString unit;
        int temperature = 0;
        QString condition, icon;
        QVector<Day> days;
    };
    // A value as the two formats write it: name, text.
    using Put = std::function<void(const char*, const QString&)>;
    using Open = std::function<void(const char*)>;
    using Close = std::function<void()>;

    int Find(const QByteArray& city, Forecast& forecast) const;
    static QString PicturePath(const QString& icon) { return "/ig/images/weather/" + icon + ".gif"; }
    void Write(const Forecast& forecast, const QString& pictureRoot, const Open& open, const Put& put,
               const Close& close) const;

    const SignFolder& m_folder;
    QDate m_today;
};
