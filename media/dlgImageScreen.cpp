#include "media/dlgImageScreen.h"
#include "media/ScreenViewFile.h"
#include "media/dlgImagePlay.h"
#include "media/showBox.h"
#include <QMouseEvent>
#include <QTimerEvent>

dlgImageScreen* dlgImageScreen::s_pInstance = nullptr;

dlgImageScreen::dlgImageScreen() : m_photos(this)
{
    setObjectName("dlgImageScreen");
    s_pInstance = this;
}

dlgImageScreen::~dlgImageScreen()
{
    if (s_pInstance == this)
        s_pInstance = nullptr;
}

bool dlgImageScreen::LoadImage(int bMessage)
{
    ScreenViewFile table;
    ScreenViewFile::FileList files;
    table.GetImageFileList(files);
    if (files.size() > 1)
        m_nAutoTimer = startTimer(dlgImagePlay::PLAY_MS, Qt::PreciseTimer);
    if (m_photos.LoadFileList(files))
        return true;
    if (bMessage)
        showBoxNoMedia();
    return false;
}

void dlgImageScreen::OnKeyDown(int key)
{
    if (key != Qt::Key_F12)
        close();
}

void dlgImageScreen::mousePressEvent(QMouseEvent* event)
{
    if (event->type() == QEvent::MouseButtonRelease)
        close();
}

void dlgImageScreen::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_nAutoTimer)
        m_photos.PlayNext();
    else
        dlgDemo::timerEvent(event);
}
