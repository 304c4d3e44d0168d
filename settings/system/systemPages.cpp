#include "settings/system/systemPages.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"
#include "settings/system/dlgAccount_Setting.h"
#include "settings/system/dlgAccount_Setting_Btn.h"
#include "settings/system/dlgDateAndTime.h"
#include "settings/system/dlgPassWord.h"
#include "settings/system/dlgSecurity.h"
#include "settings/system/dlgSetDialNumber.h"
#include "settings/system/dlgStatus.h"
#include "settings/system/dlgVersion_Detail.h"
#include "settings/system/dlgWan.h"

namespace {

QDialog* newAccountPage(int index)
{
    return new dlgAccount_Setting(nullptr, index);
}

QDialog* newDialNumberBox(qDialNumberItem* item, QWidget* parent)
{
    return new dlgSetDialNumber(item, parent);
}

int askAdminPassword(QWidget* parent)
{
    dlgPassWord box(parent);
    return box.exec() == QDialog::Accepted;
}

} // namespace

HX_PAGE(dlgWan);
HX_PAGE(dlgAccount_Setting_Btn);
HX_PAGE(dlgDateAndTime);
HX_PAGE(dlgSecurity);
HX_PAGE(dlgStatus);
HX_PAGE(dlgVersion_Detail);
HX_ROOM_HOOK(makeAccountPage, newAccountPage);
HX_ROOM_HOOK(makeDialNumberBox, newDialNumberBox);
HX_ROOM_HOOK(askAdminPassword, askAdminPassword);

void settingsSystemPages() {}
