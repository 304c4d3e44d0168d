#include "applets/dataToSettingHTML.h"

chString DataToSettingHTML::DatatoHTML(tagMoreDaysInfo)
{
    return chString();
}
