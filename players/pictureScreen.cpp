#include "players/pictureScreen.h"
#include "support/host/message.h"
#include "support/host/player.h"
#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// Of a line that far from the edge above or below: what the rounding takes at either end.
int insetOf(int fromEdge)
{
    if (fromEdge >= CALL_OWN_CORNER)
        return 0;
    const double up = CALL_OWN_CORNER - fromEdge - 0.5;
    return int(std::ceil(CALL_OWN_CORNER - std::sqrt(CALL_OWN_CORNER * CALL_OWN_CORNER - up * up)));
}

} // namespace

void pictureScreen::setSurface(const QSize& size)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_surface = size;
}

QSize pictureScreen::surface() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_surface;
}

void pictureScreen::setOwnPlace(const QRect& place)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_ownPlace = place;
}

void pictureScreen::tellPhone() const
{
    msgPostMsgToThread(msgGetThreadByName("app_hxPhone"), MEDIA_MSG_FRAME,
                       unsigned(QCoreApplication::applicationPid()), unsigned(m_writer.descriptor()));
}

void pictureScreen::showFilm(const GstVideoFrame& frame, const QRect& place, pictureScaler& scaler)
{
    QSize size;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_calls.isEmpty())
            return;
        size = place.isEmpty() ? m_surface : place.size();
    }
    if (scaler.prepare(frame.info, size, place.isEmpty()) &&
        m_writer.write(size, place, [&](unsigned char* pixels) { scaler.paint(frame, pixels); }))
        tellPhone();
}

void pictureScreen::moveFilm(const QRect& place)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_calls.isEmpty())
            return;
    }
    if (m_writer.move(place))
        tellPhone();
}

void pictureScreen::endFilm()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_calls.isEmpty())
            return;
    }
    m_writer.clear();
    tellPhone();
}

// Line by line, as far as both reach, and without the corners.
void pictureScreen::paintOwn(unsigned char* pixels, const QSize& size) const
{
    const QRect inside = m_ownPlace.intersected(QRect(QPoint(0, 0), size));
    const char* own = m_own.pixels.isEmpty() ? nullptr : m_own.pixels.constData();
    if (!own || inside.isEmpty() || m_own.size != m_ownPlace.size() || m_calls.last() != m_nOwnCall)
        return;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const int inset = insetOf(std::min(y - m_ownPlace.top(), m_ownPlace.bottom() - y));
        const int left = std::max(inside.left(), m_ownPlace.left() + inset);
        const int count = std::min(inside.right(), m_ownPlace.right() - inset) - left + 1;
        const qsizetype from = qsizetype(y - m_ownPlace.y()) * m_own.size.width() + left - m_ownPlace.x();
        const qsizetype to = qsizetype(y) * size.width() + left;
        if (count > 0)
            memcpy(pixels + to * VIDEO_STORE_PIXEL, own + from * VIDEO_STORE_PIXEL,
                   size_t(count) * VIDEO_STORE_PIXEL);
    }
}

void pictureScreen::showCall(int call, const GstVideoFrame& frame)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_calls.contains(call))
        m_calls.append(call);
    if (m_calls.last() != call || !m_scaler.prepare(frame.info, m_surface, true))
        return;
    const bool isShown = m_writer.write(m_surface, QRect(), [&](unsigned char* pixels) {
        m_scaler.paint(frame, pixels);
        paintOwn(pixels, m_surface);
    });
    if (isShown)
        tellPhone();
}

void pictureScreen::showOwn(int call, const GstVideoFrame& frame)
{
    QSize size;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_ownPlace.isEmpty() || m_calls.isEmpty() || m_calls.last() != call)
            return;
        size = m_ownPlace.size();
    }
    const std::lock_guard<std::mutex> own(m_ownMutex);
    tagOwn made{QByteArray(qsizetype(size.width()) * size.height() * VIDEO_STORE_PIXEL, Qt::Uninitialized),
                size};
    if (!m_ownScaler.prepare(frame.info, size, true))
        return;
    m_ownScaler.paint(frame, reinterpret_cast<unsigned char*>(made.pixels.data()));
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_own = std::move(made);
    m_nOwnCall = call;
}

void pictureScreen::endOwn(int call)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_nOwnCall != call)
        return;
    m_nOwnCall = 0;
    m_own = tagOwn();
}

void pictureScreen::endCall(int call)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool isSeen = !m_calls.isEmpty() && m_calls.last() == call;
    m_calls.removeOne(call);
    if (!isSeen)
        return;
    m_writer.release();
    tellPhone();
}
