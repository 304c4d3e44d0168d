#include "applets/appletPages.h"
#include "applets/dlgStock.h"
#include "applets/dlgWeather.h"
#include "applets/weatherController.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"

namespace {

chString weatherCity()
{
    return GetWeatherControl().SendCityNametoLogic();
}

void requestWeather(chReferObject view, const chString& city)
{
    GetWeatherControl().RequestForHost(view, city);
}

} // namespace

HX_PAGE(dlgStock);
HX_PAGE(dlgWeather);
HX_ROOM_HOOK(requestWeather, requestWeather);
HX_ROOM_HOOK(weatherCity, weatherCity);

void appletPages() {}
