#include "settings/call/callPages.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"
#include "settings/call/dlgAnonymousCallDialog.h"
#include "settings/call/dlgAuto_Answer.h"
#include "settings/call/dlgCall_Waiting.h"
#include "settings/call/dlgDoorPhone.h"
#include "settings/call/dlgDssKeyList.h"
#include "settings/call/dlgForward_Setting.h"
#include "settings/call/dlgHotline.h"
#include "settings/call/dlgIpCamera.h"
#include "settings/call/dlgKey_As_Send.h"
#include "settings/call/dlgPictureDialSetting.h"
#include "settings/call/dlgSpeedDial.h"
#include "settings/call/dlgVideoSet.h"
#include "settings/call/dlgVoice_Mail_Setting.h"
#include "settings/call/voiceMessage.h"

namespace {

QDialog* newDoorPhonePage(int index)
{
    auto* page = new dlgDoorPhone(nullptr, nullptr);
    page->m_iIndex = index;
    return page;
}

QDialog* ipCameraPageOfItem(QWidget* parent, IPCameraIconViewItem* item)
{
    dlgIpCamera* page = PopupDialog<dlgIpCamera>(nullptr, 1, 0, 0);
    if (page)
        page->initDataByIconViewItem(parent, item);
    return page;
}

QDialog* ipCameraPageOfTitle(const QString& title)
{
    dlgIpCamera* page = PopupDialog<dlgIpCamera>(nullptr, 1, 0, 0);
    if (page)
        page->initDataByTitle(title);
    return page;
}

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
HX_PAGE(dlgIpCamera);
HX_PAGE(dlgKey_As_Send);
HX_PAGE(dlgPictureDialSetting);
HX_PAGE(dlgVideoSet);
HX_PAGE(dlgVoice_Mail_Setting);
HX_ROOM_HOOK(ipCameraPageOfItem, ipCameraPageOfItem);
HX_ROOM_HOOK(ipCameraPageOfTitle, ipCameraPageOfTitle);
HX_ROOM_HOOK(makeDoorPhonePage, newDoorPhonePage);
HX_ROOM_HOOK(speedDialPage, speedDialPage);
HX_ROOM_HOOK(voiceMessageDialOut, DoVoiceMessageDialOut);

void settingsCallPages() {}
