#include "media/dlgVideoPreview.h"
#include "media/storageTools.h"
#include "media/videoAssistant.h"
#include "support/host/screen.h"
#include "support/host/trace.h"

dlgVideoPreview* dlgVideoPreview::s_pInstance = nullptr;

dlgVideoPreview::dlgVideoPreview() : VideoDialog(0), m_devices(this)
{
    setObjectName("dlgVideoPreview");
    s_pInstance = this;
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
}

dlgVideoPreview::~dlgVideoPreview()
{
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    if (s_pInstance == this)
        s_pInstance = nullptr;
}

bool dlgVideoPreview::LoadVideoFile(const char* file)
{
    nuxTrace(TRACE_DETAIL, "----[%s]---", file);
    m_bRemovable = IsPartOfAll("/storage/uDisk", file) || IsPartOfAll("/storage/sdCard", file);
    if (m_bRemovable)
        nuxTrace(TRACE_DETAIL, "preview file is in usb or sdCard");
    return Video()->LoadFile(file);
}

void dlgVideoPreview::OnKeyDown(int key)
{
    TryPlayerKey(key);
}

void dlgVideoPreview::OnKeyUp(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_F7:
    case Qt::Key_F12:
        break;
    default:
        close();
    }
}

int dlgVideoPreview::TryThreadMessage(msgObject& msg)
{
    if (msg.message != DEVICE_MSG_EVENT)
        return 0;
    if (msg.wParam == DEVICE_EVENT_REMOVE && m_bRemovable)
        Destruct();
    return 1;
}
