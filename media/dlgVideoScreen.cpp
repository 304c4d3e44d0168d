#include "media/dlgVideoScreen.h"
#include "frame/configFiles.h"
#include "media/ScreenViewFile.h"
#include "media/showBox.h"
#include "media/videoAssistant.h"
#include "support/host/registry.h"
#include "support/host/trace.h"
#include <QMouseEvent>

dlgVideoScreen* dlgVideoScreen::s_pInstance = nullptr;

dlgVideoScreen::dlgVideoScreen()
    : VideoDialog(nuxGetRegistryInt(USER_INI, "ScreenSaver", "bScreenSaverMute", 1))
{
    setObjectName("dlgVideoScreen");
    s_pInstance = this;
}

dlgVideoScreen::~dlgVideoScreen()
{
    if (s_pInstance == this)
        s_pInstance = nullptr;
}

bool dlgVideoScreen::LoadVideo(int bMessage)
{
    ScreenViewFile table;
    ScreenViewFile::FileList files;
    table.GetVideoFileList(files);
    if (!files.empty())
        return Video()->LoadFileList(files);
    if (bMessage)
        showBoxNoMedia();
    return false;
}

void dlgVideoScreen::OnKeyDown(int key)
{
    if (key != Qt::Key_F12)
        close();
}

void dlgVideoScreen::mousePressEvent(QMouseEvent* event)
{
    nuxTrace(TRACE_DETAIL, "dlgVideoScreen::mousePressEvent");
    if (event->type() == QEvent::MouseButtonRelease)
        close();
}
