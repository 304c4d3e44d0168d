#pragma once
#include "support/host/weather.h"
#include "support/text/chString.h"

// The place for a forecast as HTML. Nobody reads what these make, which is nothing.
class BasicDataToHTML
{
public:
    virtual ~BasicDataToHTML();
    virtual chString DatatoHTML(tagMoreDaysInfo info);
};
