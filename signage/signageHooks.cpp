// What the other rooms need of the signage client.
#include "signage/signageHooks.h"
#include "frame/roomHooks.h"
#include "media/videoAssistant.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckWindow.h"

namespace {

int isEnabled()
{
    return GetNDeckDispaly().IsNdeckEnable();
}

void setAutoUpdate(int enable)
{
    GetNDeckFileManager().SetAutoUpdateEnable(enable);
}

void downloadFrame()
{
    GetNDeckFileManager().DownloadDisplayFrame();
}

int windowDisplay(int bShow, int type, QWidget* parent, QRect rect)
{
    return nDeckWindowDisplay(bShow, E_NDECKWINDOW_TYPE(type), parent, rect);
}

bool isTalkWindow()
{
    return GetnDeckWindow().getNDeckWindowType() == NDECK_WINDOW_TALK;
}

[[maybe_unused]] const bool s_knowsTalk = (videoAssistant::SetTalkWindowTest(isTalkWindow), true);

} // namespace

HX_ROOM_HOOK(isNdeckEnable, isEnabled);
HX_ROOM_HOOK(ndeckSetAutoUpdateEnable, setAutoUpdate);
HX_ROOM_HOOK(ndeckDownloadDisplayFrame, downloadFrame);
HX_ROOM_HOOK(ndeckWindowDisplay, windowDisplay);

void signageHooks() {}
