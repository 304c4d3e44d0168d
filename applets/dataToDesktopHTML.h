#pragma once
#include "applets/basicDataToHTML.h"

// As the home screen would show it.
class DataToDesktopHTML : public BasicDataToHTML
{
public:
    chString DatatoHTML(tagMoreDaysInfo info) override;
};
