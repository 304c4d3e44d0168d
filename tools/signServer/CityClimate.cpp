#include "tools/signServer/CityClimate.h"
#include <QStringList>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kHalfTurn = 180, kDayHours = 24, kWarmestHour = 15;
constexpr double kMostTilt = 23.44; // degrees of the sun, at midsummer
constexpr double kDaysOfMonth = 30.4;
constexpr double kMiddleOfMonth = 15;
constexpr double kWeatherDays = 4;  // how long a warm or a cold time lasts
constexpr double kSnowBelow = 1.5;  // the mean of a day, degrees Celsius
constexpr double kStormAbove = 18;  // likewise
constexpr double kFogBelow = 13;    // likewise
constexpr double kStormShare = 0.4; // of the wet days that are warm
constexpr double kLightShare = 0.5; // of the other wet days
constexpr double kFogShare = 0.08;  // of the dry days
constexpr double kPartlyShare = 0.35;

double Radians(double degrees)
{
    return degrees * std::acos(-1.0) / kHalfTurn;
}

// How far north the sun stands above the equator at noon, in degrees.
double SunTilt(const QDate& date)
{
    return -kMostTilt * std::cos(Radians((date.dayOfYear() + 10) * 360 / 365.25));
}

} // namespace

CityClimate::CityClimate(const QXmlStreamAttributes& city)
    : m_chance(city.value("name").toString().toLower().toUtf8()),
      m_spread(std::clamp(city.value("spread").toDouble(), 0.0, 30.0)),
      m_latitude(std::clamp(city.value("latitude").toDouble(), -90.0, 90.0)),
      m_longitude(std::clamp(city.value("longitude").toDouble(), -180.0, 180.0)),
      m_fahrenheit(city.value("unit") == QLatin1String("US")),
      m_bGood(ReadMonths(city.value("means").toString(), m_means) &&
              ReadMonths(city.value("wet").toString(), m_wet))
{
}

bool CityClimate::ReadMonths(const QString& text, Months& months)
{
    const QStringList words = text.simplified().split(' ');
    bool isGood = words.size() == qsizetype(months.size());
    for (size_t i = 0; isGood && i < months.size(); ++i) {
        const double value = words[qsizetype(i)].toDouble(&isGood);
        months[i] = std::clamp(value, -80.0, 60.0);
    }
    return isGood;
}

// A month's number is that of its middle; between two of them the way is straight.
double CityClimate::OfMonths(const Months& months, const QDate& day)
{
    const double place = day.month() - 1 + (day.day() - kMiddleOfMonth) / kDaysOfMonth;
    const double before = std::floor(place);
    const size_t count = months.size(), from = size_t(before + double(count)) % count;
    return months[from] + (months[(from + 1) % count] - months[from]) * (place - before);
}

void CityClimate::ChooseSky(const QDate& date, double mean, bool isWet, Day& day) const
{
    const double chance = m_chance.At("sky", date.toJulianDay());
    if (isWet && mean < kSnowBelow)
        day = {day.low, day.high, chance < kLightShare ? "Light snow" : "Snow", "snow"};
    else if (isWet && mean > kStormAbove && chance < kStormShare)
        day = {day.low, day.high, "Thunderstorm", "storm"};
    else if (isWet)
        day = {day.low, day.high, chance > 1 - kLightShare ? "Light rain" : "Rain", "rain"};
    else if (chance < kFogShare && mean < kFogBelow)
        day = {day.low, day.high, "Fog", "fog"};
    else if (chance < kFogShare + OfMonths(m_wet, date) / kDaysOfMonth)
        day = {day.low, day.high, "Cloudy", "cloudy"};
    else if (chance > 1 - kPartlyShare)
        day = {day.low, day.high, "Partly cloudy", "partly"};
    else
        day = {day.low, day.high, "Sunny", "sunny"};
}

CityClimate::Day CityClimate::DayAt(const QDate& date) const
{
    // Far from the equator the weather differs more from the climate.
    const double reach = 1 + std::abs(m_latitude) / 12;
    const double mean =
        OfMonths(m_means, date) + reach * m_chance.Smooth("warm", double(date.toJulianDay()), kWeatherDays);
    const bool isWet = m_chance.At("wet", date.toJulianDay()) < OfMonths(m_wet, date) / kDaysOfMonth;
    // Summer's days differ more from its nights than winter's.
    const double season = SunTilt(date) / kMostTilt * std::clamp(m_latitude / 45, -1.0, 1.0);
    const double half = m_spread / 2 * (isWet ? 0.7 : 1.1) * (1 + 0.25 * season);
    Day day = {mean - half, mean + half, QString(), QString()};
    ChooseSky(date, mean, isWet, day);
    return day;
}

double CityClimate::SolarHour(const QDateTime& now) const
{
    const double utc = now.toUTC().time().msecsSinceStartOfDay() / 3600000.0;
    return std::fmod(utc + m_longitude / 15 + 2 * kDayHours, kDayHours);
}

bool CityClimate::IsNight(const QDate& date, double hour) const
{
    const double tilt = Radians(SunTilt(date));
    const double latitude = Radians(m_latitude), turn = Radians((hour - 12) * 15);
    return std::sin(latitude) * std::sin(tilt) + std::cos(latitude) * std::cos(tilt) * std::cos(turn) < 0;
}

int CityClimate::Shown(double celsius) const
{
    return int(std::lround(m_fahrenheit ? celsius * 1.8 + 32 : celsius));
}

Forecast CityClimate::At(const QDate& today, const QDateTime& now) const
{
    Forecast forecast;
    forecast.fahrenheit = m_fahrenheit;
    forecast.date = today;
    for (int i = 0; i < Forecast::Days; ++i) {
        const Day day = DayAt(today.addDays(i));
        forecast.days.append(
            {day.condition, QString::number(Shown(day.low)), QString::number(Shown(day.high)), day.icon});
    }
    const Day day = DayAt(today);
    const double hour = SolarHour(now);
    const double wave = std::cos(Radians((hour - kWarmestHour) / kDayHours * 360));
    forecast.temperature = Shown((day.low + day.high) / 2 + (day.high - day.low) / 2 * wave);
    const bool isClear = day.icon == "sunny" && IsNight(today, hour);
    forecast.condition = isClear ? "Clear" : day.condition;
    forecast.icon = isClear ? "clear" : day.icon;
    return forecast;
}
