#include "applets/dataToDesktopHTML.h"

chString DataToDesktopHTML::DatatoHTML(tagMoreDaysInfo)
{
    return chString();
}
