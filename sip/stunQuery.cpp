#include "sip/stunQuery.h"

StunQuery::StunQuery(const tagStunPace& pace, int64_t nowMs)
    : m_pace(pace), m_id(), m_request(), m_nWaitMs(pace.nFirstMs), m_nNextMs(nowMs)
{
    m_bOver = !stunMessage::newId(m_id); // one that could be guessed is not sent
    m_request = stunMessage::request(m_id);
}

bool StunQuery::isDue(int64_t nowMs)
{
    if (isOver(nowMs) || nowMs < m_nNextMs)
        return false;
    ++m_nTimes;
    m_nNextMs = nowMs + (m_nTimes < m_pace.nTimes ? m_nWaitMs : m_pace.nLastMs);
    m_nWaitMs *= 2;
    return true;
}

bool StunQuery::take(const unsigned char* bytes, size_t size)
{
    if (m_bOver || m_nTimes == 0)
        return false;
    const stunMessage::ANSWER answer = stunMessage::read(bytes, size, m_id, m_place);
    m_bOver = answer != stunMessage::ANSWER::NONE;
    return m_bOver;
}

bool StunQuery::isOver(int64_t nowMs) const
{
    return m_bOver || (m_nTimes == m_pace.nTimes && nowMs >= m_nNextMs);
}
