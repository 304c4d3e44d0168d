#pragma once
// The module's entries for pages and menus as the host takes them.
#include "frame/modSetting.h"
#include "support/host/module.h"

// Those of the signage are still null.
inline tagModuleEntries settingEntries()
{
    tagModuleEntries entries;
    entries.openPage = settingOpenPage;
    entries.openPageWithInfo = settingOpenPage;
    entries.openDirectory = settingOpenPage;
    entries.openMenu = settingOpenXml;
    entries.openFrame = settingOpenFrame;
    entries.refreshMenu = RefreshOpenXml;
    entries.cacheWindows = settingCacheWindows;
    entries.iconView = getIconView;
    entries.promptUserLevel = settingPromptUserLevel;
    entries.setDialNumber = settingDialNum;
    entries.editCamera = settingIpCamera;
    entries.requestWeather = settingRequestWeather;
    entries.weatherCity = settingWeatherCity;
    return entries;
}
