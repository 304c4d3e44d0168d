#pragma once
#include "applets/basicDataToHTML.h"

// As the page would show it.
class DataToSettingHTML : public BasicDataToHTML
{
public:
    chString DatatoHTML(tagMoreDaysInfo info) override;
};
