#pragma once
#include "applets/mvcData.h"
#include "support/host/weather.h"
#include "support/text/chString.h"

// An answer and what it says.
class WeatherRespondData : public MVCData
{
public:
    ~WeatherRespondData() override;

    chString strXmlFile; // device path of the answer
    tagMoreDaysInfo info;
};
