#include "settings/personal/personalPages.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"
#include "settings/personal/dlgAutoServer.h"
#include "settings/personal/dlgPhone_Setting.h"
#include "settings/personal/dlgScreenSaver.h"
#include "settings/personal/dlgSound.h"
#include "settings/personal/dlgTvOutPut.h"

namespace {

void reloadWallPaper()
{
    if (dlgScreenSaver* page = getScreenSaverDlg())
        page->reloadWallPaper();
}

void reloadSound()
{
    if (dlgSound* page = getSoundDlg())
        page->reloadSound();
}

} // namespace

HX_PAGE(dlgPhone_Setting);
HX_PAGE(dlgScreenSaver);
HX_PAGE(dlgSound);
HX_PAGE(dlgTvOutPut);
HX_PAGE(dlgAutoServer);
HX_ROOM_HOOK(reloadWallPaper, reloadWallPaper);
HX_ROOM_HOOK(reloadSound, reloadSound);

void settingsPersonalPages() {}
