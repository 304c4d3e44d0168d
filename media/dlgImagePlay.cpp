#include "media/dlgImagePlay.h"
#include "media/ScreenViewFile.h"
#include "media/showBox.h"
#include "support/host/screen.h"
#include <QTimerEvent>

dlgImagePlay* dlgImagePlay::s_pInstance = nullptr;

dlgImagePlay::dlgImagePlay() : m_devices(this), m_photos(this)
{
    setObjectName("dlgImagePlay");
    s_pInstance = this;
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
}

dlgImagePlay::~dlgImagePlay()
{
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    if (s_pInstance == this)
        s_pInstance = nullptr;
}

bool dlgImagePlay::LoadImage()
{
    ScreenViewFile table;
    ScreenViewFile::FileList files;
    table.GetImageFileList(files);
    if (files.size() > 1)
        StartAutoPlay();
    if (m_photos.LoadFileList(files))
        return true;
    showBoxNoMedia();
    return false;
}

void dlgImagePlay::StartAutoPlay()
{
    m_nAutoTimer = startTimer(PLAY_MS, Qt::PreciseTimer);
}

void dlgImagePlay::StopAutoPlay()
{
    killTimer(m_nAutoTimer);
    m_nAutoTimer = TIMER_OFF;
}

// A show that pauses goes on pausing.
void dlgImagePlay::ResetAutoPlay()
{
    if (!IsAutoPlaying())
        return;
    StopAutoPlay();
    StartAutoPlay();
}

void dlgImagePlay::SwitchAutoPlay()
{
    if (m_photos.GetFileSize() < 2)
        return;
    if (IsAutoPlaying())
        StopAutoPlay();
    else
        StartAutoPlay();
}

void dlgImagePlay::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_nAutoTimer)
        m_photos.PlayNext();
    else
        dlgDemo::timerEvent(event);
}

void dlgImagePlay::OnKeyDown(int key)
{
    switch (key) {
    case Qt::Key_Right:
        ResetAutoPlay();
        m_photos.PlayNext();
        break;
    case Qt::Key_Left:
        ResetAutoPlay();
        m_photos.PlayLast();
        break;
    case Qt::Key_Return:
        SwitchAutoPlay();
        break;
    case Qt::Key_F4:
    case Qt::Key_F12:
        break;
    default:
        close();
    }
}

void dlgImagePlay::OnKeyUp(int key)
{
    if (key == Qt::Key_F4)
        close();
}

int dlgImagePlay::TryThreadMessage(msgObject& msg)
{
    if (msg.message != DEVICE_MSG_EVENT)
        return 0;
    if (msg.wParam == DEVICE_EVENT_REMOVE)
        close();
    return 1;
}
