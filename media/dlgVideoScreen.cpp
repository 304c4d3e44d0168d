#include "media/dlgVideoScreen.h"
#include "frame/configFiles.h"
#include "media/showFiles.h"
#include "support/host/registry.h"
#include "support/host/trace.h"
#include <QMouseEvent>

dlgVideoScreen::dlgVideoScreen()
    : VideoDialog(nuxGetRegistryInt(USER_INI, "ScreenSaver", "bScreenSaverMute", 1))
{
    setObjectName("dlgVideoScreen");
}

bool dlgVideoScreen::LoadVideo(int bMessage)
{
    return loadFilms(Video(), bMessage);
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
