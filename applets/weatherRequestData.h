#pragma once
#include "applets/mvcData.h"
#include "support/text/chString.h"

// A question for the weather of a city.
class WeatherRequestData : public MVCData
{
public:
    ~WeatherRequestData() override;

    chString strUrl; // that was built for it
    chString strCity;
};
