#include "media/dlgImageScreen.h"
#include "media/dlgImagePlay.h"
#include "media/showFiles.h"
#include <QMouseEvent>
#include <QTimerEvent>

dlgImageScreen::dlgImageScreen() : m_photos(this)
{
    setObjectName("dlgImageScreen");
}

bool dlgImageScreen::LoadImage(int bMessage)
{
    if (!loadPhotos(m_photos, bMessage) || m_photos.IsNothingShown())
        return false;
    m_photos.SetNothingTold([this] { close(); });
    if (m_photos.GetFileSize() > 1)
        m_nAutoTimer = startTimer(dlgImagePlay::PLAY_MS, Qt::PreciseTimer);
    return true;
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
