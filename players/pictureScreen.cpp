#include "players/pictureScreen.h"
#include "support/host/message.h"
#include "support/host/player.h"
#include <QCoreApplication>
#include <cstring>

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

// Line by line, as far as both reach.
void pictureScreen::paintOwn(unsigned char* pixels, const QSize& size) const
{
    const QRect inside = m_ownPlace.intersected(QRect(QPoint(0, 0), size));
    const char* own = m_own.pixels.isEmpty() ? nullptr : m_own.pixels.constData();
    if (!own || inside.isEmpty() || m_own.size != m_ownPlace.size() || m_calls.last() != m_nOwnCall)
        return;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const qsizetype from =
            qsizetype(y - m_ownPlace.y()) * m_own.size.width() + inside.x() - m_ownPlace.x();
        const qsizetype to = qsizetype(y) * size.width() + inside.x();
        memcpy(pixels + to * VIDEO_STORE_PIXEL, own + from * VIDEO_STORE_PIXEL,
               size_t(inside.width()) * VIDEO_STORE_PIXEL);
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
