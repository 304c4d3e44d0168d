#include "media/basePreview.h"
#include <QTimerEvent>

basePreview::basePreview(QObject* parent, int delay, PREVIEW_MEDIA_TYPE type)
    : QObject(parent), m_nDelay(delay), m_eType(type)
{
}

int basePreview::startPreview(const chString& file)
{
    if (m_bActive && m_strFile == file)
        return 1;
    m_strFile = file;
    if (m_nDelay == 0) {
        m_bActive = 1;
        on_start_preview(true);
        return 1;
    }
    stopPreview();
    m_nTimerId = startTimer(m_nDelay, Qt::PreciseTimer);
    return 1;
}

void basePreview::stopPreview()
{
    if (m_bActive) {
        m_bActive = 0;
        on_stop_preview();
    }
    KillTimer();
}

void basePreview::KillTimer()
{
    if (m_nTimerId == NO_TIMER)
        return;
    killTimer(m_nTimerId);
    m_nTimerId = NO_TIMER;
}

void basePreview::on_stop_preview() {}

void basePreview::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_nTimerId) {
        QObject::timerEvent(event);
        return;
    }
    KillTimer();
    m_bActive = 1;
    on_start_preview(true);
}
