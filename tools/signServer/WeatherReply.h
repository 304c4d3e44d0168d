#pragma once
// A forecast in the format of the signage server and in that of the public feed.
#include "tools/signServer/Forecast.h"
#include <QByteArray>
#include <optional>

// Without a forecast the city is told to be unknown. pictureRoot: what stands in front of
// "/ig/images/weather/", as "http://host:port".
QByteArray WeatherForPhone(const std::optional<Forecast>& forecast, const QByteArray& pictureRoot);
QByteArray WeatherForPublic(const std::optional<Forecast>& forecast);
