#include "settings/call/callPages.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"
#include "settings/call/dlgAnonymousCallDialog.h"
#include "settings/call/dlgAuto_Answer.h"
#include "settings/call/dlgCall_Waiting.h"
#include "settings/call/dlgDssKeyList.h"
#include "settings/call/dlgForward_Setting.h"
#include "settings/call/dlgHotline.h"
#include "settings/call/dlgKey_As_Send.h"
#include "settings/call/dlgSpeedDial.h"
#include "settings/call/dlgVideoSet.h"

namespace {

QDialog* speedDialPage()
{
    return getSpeedDialDialog();
}

} // namespace

HX_PAGE(dlgAnonymousCallDialog);
HX_PAGE(dlgAuto_Answer);
HX_PAGE(dlgCall_Waiting);
HX_PAGE(dlgDssKeyList);
HX_PAGE(dlgForward_Setting);
HX_PAGE(dlgHotline);
HX_PAGE(dlgKey_As_Send);
HX_PAGE(dlgVideoSet);
HX_ROOM_HOOK(speedDialPage, speedDialPage);

void settingsCallPages() {}
