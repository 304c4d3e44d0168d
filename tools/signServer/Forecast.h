#pragma once
// The weather of a place as the feeds tell it: now, and of three days.
#include <QDate>
#include <QString>
#include <QVector>

struct DayForecast
{
    QString condition, low, high, icon; // icon: a name in icons/, without its ending
};

struct Forecast
{
    static constexpr int Days = 3;

    bool fahrenheit = false; // the unit of all numbers; otherwise Celsius
    int temperature = 0;
    QString condition, icon;
    QDate date;                // of the first day
    QVector<DayForecast> days; // at least three
};

int ToFahrenheit(int celsius);
int ToCelsius(int fahrenheit);
