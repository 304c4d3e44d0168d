#include "bench/soundRelay.h"
#include <QList>
#include <algorithm>
#include <arpa/inet.h>
#include <ctime>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kLookMs = 20;
constexpr size_t kMostBytes = 65536;
constexpr int kTries = 50;
constexpr int kHeadBytes = 12;
constexpr int kAlaw = 8;
constexpr int kLoudAlaw = 0x30; // a 64th of the loudest
constexpr int kSmallBytes = 40;

sockaddr_in placeOf(uint32_t port)
{
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    place.sin_port = htons(uint16_t(port));
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return place;
}

// -1 where the port is taken; port 0: any.
int socketAt(uint32_t port, uint32_t& taken)
{
    const int made = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_in place = placeOf(port);
    socklen_t size = sizeof place;
    if (bind(made, reinterpret_cast<sockaddr*>(&place), size) == 0 &&
        getsockname(made, reinterpret_cast<sockaddr*>(&place), &size) == 0) {
        taken = ntohs(place.sin_port);
        return made;
    }
    close(made);
    return -1;
}

// Of sound and its reports, side by side.
bool takePair(int& rtp, int& rtcp, uint32_t& rtpPort, uint32_t& rtcpPort)
{
    for (int i = 0; i < kTries; ++i) {
        rtp = socketAt(0, rtpPort);
        rtcp = rtpPort % 2 == 0 ? socketAt(rtpPort + 1, rtcpPort) : -1;
        if (rtcp >= 0)
            return true;
        close(rtp);
        rtp = -1;
    }
    return false;
}

// A-law says it itself; of other codecs a packet that is not small.
bool isAudible(const QByteArray& packet)
{
    if (packet.size() <= kHeadBytes || (packet[1] & 0x7f) != kAlaw)
        return packet.size() > kHeadBytes + kSmallBytes;
    return std::any_of(packet.begin() + kHeadBytes, packet.end(),
                       [](char law) { return ((law ^ 0x55) & 0x7f) >= kLoudAlaw; });
}

} // namespace

SoundRelay::SoundRelay(uint32_t exchange) : m_nExchange(exchange)
{
    m_sockets.fill(-1);
    m_sockets[SIGNALS] = socketAt(0, m_ports[SIGNALS]);
    for (const PORT port : {RTP_OF_CALLER, RTP_OF_CALLED}) {
        const auto next = size_t(port) + 1;
        if (!takePair(m_sockets[port], m_sockets[next], m_ports[port], m_ports[next]))
            return;
    }
    setNetwork(0, 0);
    m_nPort = m_ports[SIGNALS];
    m_thread = std::thread([this] { run(); });
}

SoundRelay::~SoundRelay()
{
    m_bEnds = true;
    if (m_thread.joinable())
        m_thread.join();
    for (const int each : m_sockets)
        close(each);
}

int64_t SoundRelay::nowUs()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

void SoundRelay::setNetwork(int lossPercent, int jitterMs, unsigned seed)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_nLoss = lossPercent;
    m_nJitterMs = jitterMs;
    m_chance.fill(std::minstd_rand(seed));
    m_bSpeaks.fill(false);
}

std::vector<SoundRelay::tagPassed> SoundRelay::takePassed(WAY way)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_passed[way], {});
}

void SoundRelay::run()
{
    while (!m_bEnds) {
        std::array<pollfd, PORTS> looks{};
        for (size_t i = 0; i < PORTS; ++i)
            looks[i] = {m_sockets[i], POLLIN, 0};
        poll(looks.data(), PORTS, m_due.empty() ? kLookMs : 1);
        for (size_t i = 0; i < PORTS; ++i) {
            if (looks[i].revents)
                take(PORT(i));
        }
        sendDue();
    }
}

void SoundRelay::take(PORT port)
{
    static thread_local std::array<char, kMostBytes> bytes;
    sockaddr_in from = {};
    for (;;) {
        socklen_t length = sizeof from;
        const ssize_t size = recvfrom(m_sockets[port], bytes.data(), bytes.size(), 0,
                                      reinterpret_cast<sockaddr*>(&from), &length);
        if (size < 0)
            return;
        const QByteArray message(bytes.data(), size);
        if (port == SIGNALS)
            passSignal(message, ntohs(from.sin_port));
        else
            passSound(port, message);
    }
}

void SoundRelay::send(PORT from, const QByteArray& packet, uint32_t to) const
{
    const sockaddr_in place = placeOf(to);
    if (to != 0)
        sendto(m_sockets[from], packet.constData(), size_t(packet.size()), 0,
               reinterpret_cast<const sockaddr*>(&place), sizeof place);
}

void SoundRelay::passSignal(const QByteArray& message, uint32_t from)
{
    if (from == m_nExchange) {
        send(SIGNALS, withOwnPorts(message, TO_CALLER), m_nCaller);
        return;
    }
    m_nCaller = from;
    send(SIGNALS, withoutOwnRoute(withOwnPorts(message, TO_CALLED)), m_nExchange);
}

// The caller goes through here by a header that the exchange would follow back.
QByteArray SoundRelay::withoutOwnRoute(const QByteArray& message) const
{
    const QByteArray own = "127.0.0.1:" + QByteArray::number(m_nPort);
    QList<QByteArray> lines;
    for (const QByteArray& line : message.split('\n')) {
        if (!line.startsWith("Route:") || !line.contains(own))
            lines.append(line);
    }
    return lines.join('\n');
}

// Whose sound goes that way says where he takes the other's; instead of that he is told to be here.
QByteArray SoundRelay::withOwnPorts(const QByteArray& message, WAY speaker)
{
    const qsizetype end = message.indexOf("\r\n\r\n") + 4;
    if (end < 4 || message.indexOf("\r\nm=audio ", end) < 0)
        return message;
    const bool isCaller = speaker == TO_CALLED;
    const uint32_t own = m_ports[isCaller ? RTP_OF_CALLER : RTP_OF_CALLED];
    QList<QByteArray> lines;
    for (const QByteArray& each : message.mid(end).split('\n')) {
        if (each.startsWith("m=audio ")) {
            QList<QByteArray> words = each.split(' ');
            m_soundPorts[speaker] = words[1].toUInt();
            words[1] = QByteArray::number(own);
            lines.append(words.join(' '));
        } else if (each.startsWith("c=IN ")) {
            lines.append("c=IN IP4 127.0.0.1\r");
        } else if (!each.startsWith("a=rtcp:")) {
            lines.append(each);
        }
    }
    const QByteArray body = lines.join('\n');
    QList<QByteArray> heads;
    for (const QByteArray& each : message.left(end).split('\n'))
        heads.append(each.toLower().startsWith("content-length:")
                         ? "Content-Length: " + QByteArray::number(body.size()) + "\r"
                         : each);
    return heads.join('\n') + body;
}

// It comes at the port that stands for who is to have it, and goes on from the one that stands for its
// speaker.
void SoundRelay::passSound(PORT at, const QByteArray& packet)
{
    const bool toCaller = at == RTP_OF_CALLER || at == RTCP_OF_CALLER;
    const bool isReport = at == RTCP_OF_CALLER || at == RTCP_OF_CALLED;
    const WAY way = toCaller ? TO_CALLER : TO_CALLED;
    const PORT from =
        isReport ? (toCaller ? RTCP_OF_CALLED : RTCP_OF_CALLER) : (toCaller ? RTP_OF_CALLED : RTP_OF_CALLER);
    const uint32_t place = m_soundPorts[toCaller ? TO_CALLED : TO_CALLER];
    const uint32_t to = place == 0 ? 0 : place + isReport;
    const int64_t now = nowUs();
    if (isReport) {
        send(from, packet, to);
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_passed[way].push_back({now, packet});
    m_bSpeaks[way] = m_bSpeaks[way] || isAudible(packet);
    const bool isLost = m_bSpeaks[way] && int(m_chance[way]() % 100) < m_nLoss;
    const int64_t later = m_bSpeaks[way] ? int64_t(m_chance[way]() % unsigned(m_nJitterMs * 1000 + 1)) : 0;
    if (!isLost && m_nJitterMs == 0)
        send(from, packet, to);
    else if (!isLost)
        m_due.emplace(now + later, tagDue{from, packet, to});
}

void SoundRelay::sendDue()
{
    for (const int64_t now = nowUs(); !m_due.empty() && m_due.begin()->first <= now;) {
        const tagDue& due = m_due.begin()->second;
        send(due.from, due.packet, due.nTo);
        m_due.erase(m_due.begin());
    }
}
