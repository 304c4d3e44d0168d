#include "media/dlgVideoPreview.h"
#include "media/storageTools.h"
#include "media/videoAssistant.h"
#include "support/host/trace.h"

dlgVideoPreview::dlgVideoPreview() : VideoDialog(0)
{
    setObjectName("dlgVideoPreview");
}

bool dlgVideoPreview::LoadVideoFile(const char* file)
{
    nuxTrace(TRACE_DETAIL, "----[%s]---", file);
    m_bRemovable = IsPartOfAll("/storage/", file); // "uDisk1", "sdCard1", or as a system names its mounts
    if (m_bRemovable)
        nuxTrace(TRACE_DETAIL, "preview file is in usb or sdCard");
    return Video().LoadFile(file);
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

void dlgVideoPreview::OnStorageGone()
{
    if (m_bRemovable)
        Destruct();
}
