#include "players/pictureScreen.h"
#include "players/callDesk.h"
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

constexpr int kSides = 2;
constexpr qint64 kMsUs = 1000;

void copyLines(unsigned char* to, int toBytes, const unsigned char* from, int fromBytes, const QSize& size)
{
    for (int y = 0; y < size.height(); ++y)
        memcpy(to + qsizetype(y) * toBytes, from + qsizetype(y) * fromBytes,
               size_t(size.width()) * VIDEO_STORE_PIXEL);
}

} // namespace

void pictureScreen::setSurface(const QSize& size)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (size != m_surface)
        dropHalves();
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
    if (!own || inside.isEmpty() || m_own.size != m_ownPlace.size() || !seen().contains(m_nOwnCall))
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

void pictureScreen::join(int call, int other)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_joined[call] = other;
    m_joined[other] = call;
}

void pictureScreen::split(int call)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_joined.contains(call))
        return;
    m_joined.remove(m_joined.take(call));
    if (m_calls.removeOne(call))
        m_calls.append(call);
    dropHalves();
}

// From the left to the right.
QList<int> pictureScreen::seen() const
{
    if (m_calls.isEmpty())
        return {};
    const int call = m_calls.last();
    const int other = m_joined.value(call);
    if (!m_calls.contains(other))
        return {call};
    return {std::min(call, other), std::max(call, other)};
}

QRect pictureScreen::halfOf(int side) const
{
    const int left = m_surface.width() / kSides;
    return side == 0 ? QRect(0, 0, left, m_surface.height())
                     : QRect(left, 0, m_surface.width() - left, m_surface.height());
}

void pictureScreen::dropHalves()
{
    m_bHalves = m_bWaiting = false;
    m_waiting = QByteArray();
}

void pictureScreen::showCall(int call, const GstVideoFrame& frame)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_calls.contains(call))
        m_calls.append(call);
    const QList<int> now = seen();
    if (now == QList<int>{call})
        showWhole(frame);
    else if (now.contains(call))
        showHalf(int(now.indexOf(call)), frame);
}

void pictureScreen::showWhole(const GstVideoFrame& frame)
{
    dropHalves();
    if (!m_scalers[0].prepare(frame.info, m_surface, true))
        return;
    const bool isShown = m_writer.write(m_surface, QRect(), [&](unsigned char* pixels) {
        m_scalers[0].paint(frame, pixels);
        paintOwn(pixels, m_surface);
    });
    if (isShown)
        tellPhone();
}

// The phone paints its whole screen for each picture: of two that come as often as each other one goes along.
void pictureScreen::showHalf(int side, const GstVideoFrame& frame)
{
    const QRect half = halfOf(side);
    if (half.isEmpty() || !m_scalers[side].prepare(frame.info, half.size(), true))
        return;
    const qint64 now = callDesk::nowUs();
    if (m_bHalves && side != m_nLeads && now - m_nLedUs < LEAD_MS * kMsUs) {
        m_waiting.resize(qsizetype(half.width()) * half.height() * VIDEO_STORE_PIXEL);
        m_scalers[side].paint(frame, reinterpret_cast<unsigned char*>(m_waiting.data()));
        m_bWaiting = true;
        return;
    }
    m_bWaiting = m_bWaiting && side == m_nLeads; // else it is older than this one
    const int lineBytes = m_surface.width() * int(VIDEO_STORE_PIXEL);
    const bool isShown =
        m_writer.writeUpon(m_surface, [&](unsigned char* pixels, const unsigned char* newest) {
            m_scalers[side].paint(frame, pixels + half.x() * qsizetype(VIDEO_STORE_PIXEL), lineBytes);
            paintOther(halfOf(1 - side), pixels, m_bHalves ? newest : nullptr);
            paintOwn(pixels, m_surface);
        });
    m_bHalves = true;
    m_bWaiting = false;
    m_nLeads = side;
    m_nLedUs = now;
    if (isShown)
        tellPhone();
}

// The half that has no new picture: as one waits for it, or as it is, or black.
void pictureScreen::paintOther(const QRect& half, unsigned char* pixels, const unsigned char* newest) const
{
    const int lineBytes = m_surface.width() * int(VIDEO_STORE_PIXEL);
    const int halfBytes = half.width() * int(VIDEO_STORE_PIXEL);
    const qsizetype left = half.x() * qsizetype(VIDEO_STORE_PIXEL);
    if (m_bWaiting)
        copyLines(pixels + left, lineBytes, reinterpret_cast<const unsigned char*>(m_waiting.constData()),
                  halfBytes, half.size());
    else if (newest)
        copyLines(pixels + left, lineBytes, newest + left, lineBytes, half.size());
    else
        for (int y = 0; y < half.height(); ++y)
            memset(pixels + left + qsizetype(y) * lineBytes, 0, size_t(halfBytes));
}

void pictureScreen::showOwn(int call, const GstVideoFrame& frame)
{
    QSize size;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const QList<int> now = seen();
        if (m_ownPlace.isEmpty() || !now.contains(call) || (m_nOwnCall != call && now.contains(m_nOwnCall)))
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
    const QList<int> before = seen();
    m_calls.removeOne(call);
    // Of two that are seen the other one has the whole surface with its next picture.
    if (before.contains(call))
        dropHalves();
    if (before != QList<int>{call})
        return;
    m_writer.release();
    tellPhone();
}
