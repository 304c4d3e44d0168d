#include "settings/call/callPages.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"
#include "settings/call/dlgDssKeyList.h"
#include "settings/call/dlgSpeedDial.h"

namespace {

QDialog* speedDialPage()
{
    return getSpeedDialDialog();
}

} // namespace

HX_PAGE(dlgDssKeyList);
HX_ROOM_HOOK(speedDialPage, speedDialPage);

void settingsCallPages() {}
