#include "tests/calls/lossyWay.h"
#include "players/callDesk.h"
#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

LossyWay::LossyWay(int onePort, int otherPort, int lossPercent, int jitterMs)
    : m_nOne(onePort), m_nOther(otherPort), m_nLoss(lossPercent), m_nJitterMs(jitterMs)
{
    m_in = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    inet_pton(AF_INET, "127.0.0.1", &place.sin_addr);
    bind(m_in, reinterpret_cast<sockaddr*>(&place), sizeof place);
    socklen_t size = sizeof place;
    getsockname(m_in, reinterpret_cast<sockaddr*>(&place), &size);
    m_nPort = ntohs(place.sin_port);
    m_thread = std::thread([this] { run(); });
}

LossyWay::~LossyWay()
{
    m_bEnds = true;
    m_thread.join();
    close(m_in);
}

void LossyWay::note(const QByteArray& packet)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (packet.size() >= rtpPacket::HEAD_BYTES)
        m_noted.emplace(packet[1] & 0x7f, packet);
}

// Both sides see one machine's one port.
void LossyWay::run()
{
    sockaddr_in to = {};
    to.sin_family = AF_INET;
    inet_pton(AF_INET, "127.0.0.1", &to.sin_addr);
    while (!m_bEnds) {
        pollfd look = {m_in, POLLIN, 0};
        char bytes[2000];
        sockaddr_in from = {};
        socklen_t length = sizeof from;
        const bool comes = poll(&look, 1, 1) > 0;
        const ssize_t size = comes ? recvfrom(m_in, bytes, sizeof bytes, MSG_DONTWAIT,
                                              reinterpret_cast<sockaddr*>(&from), &length)
                                   : 0;
        const long long now = callDesk::nowUs();
        const QByteArray packet(bytes, std::max<qsizetype>(0, qsizetype(size)));
        const int target = ntohs(from.sin_port) == m_nOne ? m_nOther : m_nOne;
        if (size > 0)
            note(packet);
        if (size > 0 && int(m_chance() % 100) >= m_nLoss)
            m_waiting.emplace(now + int(m_chance() % unsigned(m_nJitterMs * 1000 + 1)),
                              tagWaiting{packet, target});
        while (!m_waiting.empty() && m_waiting.begin()->first <= now) {
            const tagWaiting& due = m_waiting.begin()->second;
            to.sin_port = htons(uint16_t(due.nTo));
            sendto(m_in, due.packet.constData(), size_t(due.packet.size()), 0,
                   reinterpret_cast<sockaddr*>(&to), sizeof to);
            m_waiting.erase(m_waiting.begin());
        }
    }
}

QByteArray LossyWay::tones(int payload) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QByteArray tones;
    const auto range = m_noted.equal_range(payload);
    for (auto it = range.first; it != range.second; ++it) {
        const QByteArray& packet = it->second;
        const bool isMarked = (packet[1] & 0x80) != 0;
        if (isMarked && packet.size() == rtpPacket::HEAD_BYTES + 4)
            tones += "0123456789*#ABCD"[packet[rtpPacket::HEAD_BYTES] & 0x0f];
    }
    return tones;
}
