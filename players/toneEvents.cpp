#include "players/toneEvents.h"
#include <QtEndian>
#include <algorithm>

namespace {

constexpr int kEndCopies = 3;         // so that the end is heard of where packets are lost
constexpr unsigned char kVolume = 10; // dB below the loudest
constexpr unsigned char kEndBit = 0x80;
constexpr int kLongest = 0xFFFF;

} // namespace

int toneEvents::codeOf(char tone)
{
    return int(QByteArray("0123456789*#ABCD").indexOf(tone));
}

bool toneEvents::add(char tone, int ms)
{
    const int code = codeOf(tone);
    if (code < 0 || m_waiting.size() >= MAX_WAITING)
        return false;
    m_waiting.append({code, std::clamp<int>(ms, LEAST_MS, MOST_MS)});
    return true;
}

void toneEvents::clear()
{
    m_waiting.clear();
    m_nDoneMs = 0;
    m_nPauseMs = 0;
}

QList<toneEvents::tagEvent> toneEvents::next(int ms, int clock)
{
    if (m_nPauseMs > 0) {
        m_nPauseMs -= ms;
        return {};
    }
    if (m_waiting.isEmpty())
        return {};
    const tagTone tone = m_waiting.first();
    const bool isFirst = m_nDoneMs == 0;
    m_nDoneMs = std::min(m_nDoneMs + ms, tone.nMs);
    const bool isEnd = m_nDoneMs >= tone.nMs;
    tagEvent event = {};
    event.content[0] = static_cast<unsigned char>(tone.nCode);
    event.content[1] = static_cast<unsigned char>(kVolume | (isEnd ? kEndBit : 0));
    qToBigEndian<quint16>(quint16(std::min(m_nDoneMs * (clock / 1000), kLongest)), event.content + 2);
    event.bFirst = isFirst;
    QList<tagEvent> events = {event};
    if (!isEnd)
        return events;
    event.bFirst = false;
    for (int i = 1; i < kEndCopies; ++i)
        events.append(event);
    m_waiting.removeFirst();
    m_nDoneMs = 0;
    m_nPauseMs = PAUSE_MS;
    return events;
}
