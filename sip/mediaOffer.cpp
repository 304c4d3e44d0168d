#include "sip/mediaOffer.h"
#include <random>
#include <utility>

namespace {

constexpr unsigned kMaxCollisions = 8; // in a row; a peer that never takes an offer keeps its media
constexpr uint32_t kUnitMs = 10;

uint32_t timeAfterCollision(bool isOwner)
{
    static std::mt19937 random{std::random_device{}()};
    const uint32_t least = isOwner ? 210 : 0, most = isOwner ? 400 : 200;
    return kUnitMs * std::uniform_int_distribution<uint32_t>(least, most)(random);
}

} // namespace

MediaOffer::MediaOffer(su_root_t* root, bool isOwner, Sender send)
    : m_bOwner(isOwner), m_send(std::move(send)), m_again(root)
{
}

void MediaOffer::want(const std::string& sdp)
{
    m_next = sdp;
    m_bWanted = true;
    sendWanted();
}

void MediaOffer::requestIsAnswered()
{
    if (m_nRequests > 0)
        --m_nRequests;
    sendWanted();
}

bool MediaOffer::settle(uint32_t status)
{
    m_bUnderWay = false;
    if (status == 491 && ++m_nCollisions <= kMaxCollisions) {
        if (!std::exchange(m_bWanted, true))
            m_next = m_sent;
        m_bCollided = true;
        m_again.start(timeAfterCollision(m_bOwner), [this] {
            m_bCollided = false;
            sendWanted();
        });
        return false;
    }
    m_nCollisions = 0;
    sendWanted();
    return true;
}

void MediaOffer::stop()
{
    m_again.stop();
    m_bWanted = m_bCollided = false;
}

void MediaOffer::sendWanted()
{
    if (m_bWanted && !m_bUnderWay && !m_bCollided && m_nRequests == 0)
        sendNext();
}

void MediaOffer::sendNext()
{
    m_bWanted = false;
    m_bUnderWay = true;
    m_sent = std::exchange(m_next, "");
    m_send(m_sent);
}
