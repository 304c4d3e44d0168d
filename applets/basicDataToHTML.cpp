#include "applets/basicDataToHTML.h"

BasicDataToHTML::~BasicDataToHTML() = default;

chString BasicDataToHTML::DatatoHTML(tagMoreDaysInfo)
{
    return chString();
}
