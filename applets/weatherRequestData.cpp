#include "applets/weatherRequestData.h"

WeatherRequestData::~WeatherRequestData() = default;
