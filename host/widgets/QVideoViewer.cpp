#include "host/services/players/videoFrames.h"
#include "support/host/video.h"
#include <QPaintEvent>
#include <QPainter>

namespace {

// The picture where it lies: no copy is made.
QImage imageOf(const tagVideoPicture& picture)
{
    return QImage(picture.pPixels, picture.nWidth, picture.nHeight, picture.nWidth * int(VIDEO_STORE_PIXEL),
                  QImage::Format_RGB32);
}

} // namespace

QVideoViewer::QVideoViewer(QWidget* parent) : QVideoViewer(0, parent) {}

QVideoViewer::QVideoViewer(int mode, QWidget* parent, Qt::WindowFlags flags)
    : QLabel(parent, flags), m_nMode(mode)
{
    connect(&videoFrames::instance(), &videoFrames::changed, this, &QVideoViewer::updatePicture);
    updateCover();
}

QVideoViewer::~QVideoViewer() = default;

void QVideoViewer::ShowVideoViewer(int show)
{
    m_bShow = show != 0;
    updateCover();
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

void QVideoViewer::SetVideoRect(const QRect& rect, int flags)
{
    m_videoRect = flags ? rect.translated(-mapToGlobal(QPoint(0, 0))) : rect;
    m_videoRectSize = size();
    updateCover();
}

// What lies below a picture that covers the whole viewer need not be painted for each frame.
void QVideoViewer::updateCover()
{
    setAttribute(Qt::WA_OpaquePaintEvent, m_bShow && m_hideRect.isEmpty() && m_videoRect.isEmpty());
    update();
}

QRect QVideoViewer::videoRect() const
{
    const bool isOwn = !m_videoRect.isEmpty() && m_videoRectSize == size();
    return isOwn ? m_videoRect : rect();
}

void QVideoViewer::GetVideoRect(QRect& rect) const
{
    rect = videoRect().translated(mapToGlobal(QPoint(0, 0)));
}

void QVideoViewer::SetHideRect(const QRect& rect, int show, int flags)
{
    m_hideRect = show ? QRect() : flags ? rect.translated(-mapToGlobal(QPoint(0, 0))) : rect;
    updateCover();
}

void QVideoViewer::GetHideRect(QRect& rect) const
{
    rect = m_hideRect.isEmpty() ? QRect() : m_hideRect.translated(mapToGlobal(QPoint(0, 0)));
}

void QVideoViewer::SetFrame(const QImage& frame)
{
    m_frame = frame;
    m_bBackground = false;
    update(videoRect());
}

// A new picture of the media server, or none any more.
void QVideoViewer::updatePicture()
{
    if (m_bShow && !m_bBackground && isVisible())
        update(videoRect());
}

QRect QVideoViewer::pictureRect(const QRect& place) const
{
    return place.isEmpty() ? videoRect() : place.translated(-mapToGlobal(QPoint(0, 0)));
}

void QVideoViewer::paintPicture(QPainter& painter, bool isWhole)
{
    const QRect video = videoRect();
    tagVideoPicture picture;
    if (!videoFrames::instance().next(picture)) {
        painter.fillRect(video, Qt::black);
        if (!m_frame.isNull())
            painter.drawImage(video, m_frame);
        return;
    }
    const QRect target = pictureRect(picture.place);
    if (!target.contains(video))
        painter.fillRect(video, Qt::black);
    painter.drawImage(target, imageOf(picture));
    if (picture.place.isEmpty())
        videoFrames::instance().askForSize(video.size());
    // Written over while it was painted: the newer one follows at once.
    if (!videoFrames::instance().isSame(picture))
        update(video);
    else if (isWhole)
        videoFrames::instance().painted(picture);
}

void QVideoViewer::paintEvent(QPaintEvent* event)
{
    const QRect video = videoRect();
    const bool isStill = m_bBackground && !pixmap().isNull();
    const bool isCovered = m_bShow && !isStill && m_hideRect.isEmpty() && video.contains(event->rect());
    if (!isCovered)
        QLabel::paintEvent(event);
    if (!m_bShow || isStill)
        return;
    QPainter painter(this);
    if (!m_hideRect.isEmpty())
        painter.setClipRegion(QRegion(video) - m_hideRect);
    else if (video != rect())
        painter.setClipRect(video);
    if (m_bBackground)
        painter.fillRect(video, Qt::black);
    else
        paintPicture(painter, event->rect().contains(video));
}
