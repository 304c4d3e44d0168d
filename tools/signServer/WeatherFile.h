#pragma once
// The cities of weather.xml. A city is found without regard to case, by its name or by one of those in
// "also".
//
//   <weather>
//     <city name="London" unit="SI">                     unit of the numbers: SI Celsius, US Fahrenheit
//       <now condition="Rain" temperature="8" icon="rain"/>
//       <day condition="Rain" low="4" high="11" icon="rain"/>   today, then tomorrow and the day after
//     </city>
//     <city name="Munich" also="Muenchen,München" latitude="48.1" longitude="11.6"
//           means="0 1 5 9 14 17 19 19 14 10 4 1" spread="9" wet="10 9 11 11 12 14 12 12 10 9 10 11"/>
//   </weather>
//
// The first day is the server's today. What is written of days goes before the climate. Of two cities with
// one name the first counts.
#include "tools/signServer/Forecast.h"
#include "tools/signServer/SignFolder.h"
#include <QDateTime>
#include <optional>

// now: the server's time, in its own zone. isWritten: only what is written of days counts, no climate.
// Nothing when the city is unknown, or has fewer than three days.
std::optional<Forecast> FindCity(const SignFolder& folder, const QByteArray& city, const QDateTime& now,
                                 bool isWritten = false);
