#include "applets/weatherRespondData.h"

WeatherRespondData::~WeatherRespondData() = default;
