#pragma once
// The weather that a place could well have: by its climate, its name and the date, and by nothing else. What
// was tomorrow's weather yesterday is today's. Any thread.
#include "tools/signServer/FeedChance.h"
#include "tools/signServer/Forecast.h"
#include <QDateTime>
#include <QXmlStreamAttributes>
#include <array>

class CityClimate
{
public:
    // The attributes of a city in weather.xml: name, latitude, longitude, means, spread, wet, unit.
    explicit CityClimate(const QXmlStreamAttributes& city);

    // There are twelve means and twelve numbers of wet days.
    bool IsGood() const { return m_bGood; }
    // today: the first day. now: in UTC, for the hour of the day at the place.
    Forecast At(const QDate& today, const QDateTime& now) const;

private:
    using Months = std::array<double, 12>;

    struct Day
    {
        double low, high; // degrees Celsius
        QString condition, icon;
    };

    static bool ReadMonths(const QString& text, Months& months);
    static double OfMonths(const Months& months, const QDate& day);
    Day DayAt(const QDate& date) const;
    void ChooseSky(const QDate& date, double mean, bool isWet, Day& day) const;
    double SolarHour(const QDateTime& now) const;
    bool IsNight(const QDate& date, double hour) const;
    int Shown(double celsius) const;

    FeedChance m_chance;
    Months m_means = {}, m_wet = {};
    double m_spread, m_latitude, m_longitude;
    bool m_fahrenheit, m_bGood;
};
