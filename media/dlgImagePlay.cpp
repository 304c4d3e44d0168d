#include "media/dlgImagePlay.h"
#include "media/showFiles.h"
#include <QTimerEvent>

dlgImagePlay::dlgImagePlay() : m_photos(this)
{
    setObjectName("dlgImagePlay");
}

bool dlgImagePlay::LoadImage()
{
    if (!loadPhotos(m_photos, 1))
        return false;
    if (m_photos.GetFileSize() > 1)
        StartAutoPlay();
    return true;
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
    default:
        EndShowByKeyDown(key);
    }
}

void dlgImagePlay::OnKeyUp(int key)
{
    EndShowByKeyUp(key);
}

void dlgImagePlay::OnStorageGone()
{
    close();
}
