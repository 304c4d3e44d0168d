#pragma once
// The files of a forecast, device paths. Each search writes them anew, and nobody removes them.

#define WEATHER_FOLDER "/tmp/"
#define WEATHER_ANSWER WEATHER_FOLDER "Weather-" // then the city and ".xml"
#define WEATHER_PICTURE_TODAY WEATHER_FOLDER "Today.gif"
#define WEATHER_PICTURE_TOMORROW WEATHER_FOLDER "Tomo.gif"
#define WEATHER_PICTURE_AFTER WEATHER_FOLDER "DayAfterTomo.gif"
