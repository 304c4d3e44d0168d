#include "media/dlgVideoPlay.h"
#include "media/ScreenViewFile.h"
#include "media/showBox.h"
#include "media/videoAssistant.h"
#include "support/host/screen.h"

dlgVideoPlay* dlgVideoPlay::s_pInstance = nullptr;

dlgVideoPlay::dlgVideoPlay() : VideoDialog(0), m_devices(this)
{
    setObjectName("dlgVideoPlay");
    s_pInstance = this;
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
}

dlgVideoPlay::~dlgVideoPlay()
{
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    if (s_pInstance == this)
        s_pInstance = nullptr;
}

bool dlgVideoPlay::LoadVideo()
{
    ScreenViewFile table;
    ScreenViewFile::FileList files;
    table.GetVideoFileList(files);
    if (!files.empty())
        return Video()->LoadFileList(files);
    showBoxNoMedia();
    return false;
}

void dlgVideoPlay::OnKeyDown(int key)
{
    if (TryPlayerKey(key))
        return;
    switch (key) {
    case Qt::Key_Left:
        Video()->PlayLast();
        break;
    case Qt::Key_Right:
        Video()->PlayNext();
        break;
    case Qt::Key_F4:
    case Qt::Key_F12:
        break;
    default:
        close();
    }
}

void dlgVideoPlay::OnKeyUp(int key)
{
    if (key == Qt::Key_F4)
        close();
}

int dlgVideoPlay::TryThreadMessage(msgObject& msg)
{
    if (msg.message != DEVICE_MSG_EVENT)
        return 0;
    if (msg.wParam == DEVICE_EVENT_REMOVE)
        Destruct();
    return 1;
}
