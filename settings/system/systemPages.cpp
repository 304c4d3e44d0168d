#include "settings/system/systemPages.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"
#include "settings/system/dlgAccount_Setting.h"
#include "settings/system/dlgAccount_Setting_Btn.h"
#include "settings/system/dlgDateAndTime.h"
#include "settings/system/dlgWan.h"

namespace {

QDialog* newAccountPage(int index)
{
    return new dlgAccount_Setting(nullptr, index);
}

} // namespace

HX_PAGE(dlgWan);
HX_PAGE(dlgAccount_Setting_Btn);
HX_PAGE(dlgDateAndTime);
HX_ROOM_HOOK(makeAccountPage, newAccountPage);

void settingsSystemPages() {}
