#include "support/host/video.h"
#include <QPainter>

QVideoViewer::QVideoViewer(QWidget* parent) : QVideoViewer(0, parent) {}

QVideoViewer::QVideoViewer(int mode, QWidget* parent, Qt::WindowFlags flags)
    : QLabel(parent, flags), m_nMode(mode)
{
}

QVideoViewer::~QVideoViewer() = default;

void QVideoViewer::ShowVideoViewer(int show)
{
    m_bShow = show != 0;
    update();
}

void QVideoViewer::SetFrameStatus(int status)
{
    m_nFrameStatus = status;
}

void QVideoViewer::ShowBackground(int show)
{
    m_bBackground = show != 0;
    update();
}

void QVideoViewer::SetVideoRect(const QRect& rect, int)
{
    m_videoRect = rect;
    update();
}

// Without a rectangle of its own the video fills the viewer.
void QVideoViewer::GetVideoRect(QRect& rect) const
{
    rect = m_videoRect.isEmpty() ? this->rect() : m_videoRect;
}

void QVideoViewer::SetHideRect(const QRect& rect, int show, int)
{
    m_hideRect = show ? QRect() : rect;
    update();
}

void QVideoViewer::GetHideRect(QRect& rect) const
{
    rect = m_hideRect;
}

void QVideoViewer::SetFrame(const QImage& frame)
{
    m_frame = frame;
    m_bBackground = false;
    QRect video;
    GetVideoRect(video);
    update(video);
}

void QVideoViewer::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (!m_bShow)
        return;
    QRect video;
    GetVideoRect(video);
    QPainter painter(this);
    painter.setClipRegion(QRegion(video) - m_hideRect);
    if (m_bBackground || m_frame.isNull()) {
        painter.fillRect(video, Qt::black);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(video, m_frame);
}
