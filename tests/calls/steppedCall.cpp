#include "tests/calls/steppedCall.h"
#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kAtMostMs = 20000; // until the system has brought what was sent

sockaddr_in placeOf(int port)
{
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    place.sin_port = htons(uint16_t(port));
    inet_pton(AF_INET, "127.0.0.1", &place.sin_addr);
    return place;
}

bool isReadable(int descriptor, int ms)
{
    pollfd look = {descriptor, POLLIN, 0};
    return poll(&look, 1, ms) > 0;
}

} // namespace

SteppedCall::tagEnd::tagEnd(double hertz) : voice(hertz)
{
    std::unique_ptr<callSockets> sockets = callSockets::open();
    nDescriptor = sockets->descriptor(false);
    nPort = sockets->port();
    // How long the machine has left a packet lying is none of its age here.
    const int off = 0;
    setsockopt(nDescriptor, SOL_SOCKET, SO_TIMESTAMPNS, &off, sizeof off);
    tagOwnMedia own;
    own.address = "127.0.0.1";
    own.nPort = nPort;
    own.bLoopback = true;
    own.nSession = 1;
    negotiation = std::make_unique<callNegotiation>(own);
    session = std::make_unique<callSession>(std::move(sockets));
}

SteppedCall::SteppedCall(double hertz, double otherHertz, int lossPercent, int jitterMs)
    : m_one(hertz), m_other(otherHertz), m_nLoss(lossPercent), m_nJitterMs(jitterMs),
      m_nWay(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in place = placeOf(0);
    socklen_t size = sizeof place;
    EXPECT_EQ(bind(m_nWay, reinterpret_cast<sockaddr*>(&place), size), 0);
    EXPECT_EQ(getsockname(m_nWay, reinterpret_cast<sockaddr*>(&place), &size), 0);
    m_nWayPort = ntohs(place.sin_port);
}

SteppedCall::~SteppedCall()
{
    close(m_nWay);
}

void SteppedCall::apply(int ptime)
{
    m_nPtime = ptime;
    for (tagEnd* end : {&m_one, &m_other}) {
        tagAgreedSound agreed = end->negotiation->agreed();
        agreed.nPtime = ptime;
        agreed.nPort = agreed.nRtcpPort = m_nWayPort;
        callSession::tagParts parts = callSession::build(agreed);
        end->session->agree(agreed, parts);
    }
}

void SteppedCall::run(int ms)
{
    for (const qint64 end = m_nNowUs + ms * 1000ll; m_nNowUs < end;
         m_nNowUs += callSession::FRAME_MS * 1000ll) {
        bringDue(m_nNowUs);
        for (tagEnd* each : {&m_one, &m_other})
            step(*each);
    }
}

// A frame, as the desk takes it.
void SteppedCall::step(tagEnd& end)
{
    short frame[callSession::FRAME_SAMPLES];
    end.session->receive(m_nNowUs);
    end.session->play(frame, m_nNowUs);
    end.voice.write(frame);
    end.voice.read(frame);
    end.session->send(frame);
    takeFrom(end);
}

// As many packets of sound as the frame has filled; reports go before them.
void SteppedCall::takeFrom(tagEnd& end)
{
    end.nWaitingMs += callSession::FRAME_MS;
    for (; end.nWaitingMs >= m_nPtime; end.nWaitingMs -= m_nPtime) {
        for (bool isSound = false; !isSound;)
            ASSERT_NO_FATAL_FAILURE(take(&end == &m_one ? m_other : m_one, isSound));
    }
}

void SteppedCall::take(tagEnd& to, bool& isSound)
{
    ASSERT_TRUE(isReadable(m_nWay, kAtMostMs));
    char bytes[rtpPacket::MAX_BYTES];
    const ssize_t size = recv(m_nWay, bytes, sizeof bytes, 0);
    ASSERT_GT(size, 0);
    isSound = !rtpPacket::isRtcp(reinterpret_cast<const unsigned char*>(bytes), int(size));
    if (int(m_chance() % 100) < m_nLoss)
        return;
    const qint64 wayUs = int(m_chance() % unsigned(m_nJitterMs * 1000 + 1));
    m_waiting.emplace(m_nNowUs + wayUs, tagWaiting{QByteArray(bytes, qsizetype(size)), &to});
}

void SteppedCall::bringDue(qint64 untilUs)
{
    while (!m_waiting.empty() && m_waiting.begin()->first <= untilUs) {
        const auto due = m_waiting.begin();
        const QByteArray& packet = due->second.packet;
        const tagEnd& to = *due->second.pTo;
        const sockaddr_in place = placeOf(to.nPort);
        ASSERT_EQ(sendto(m_nWay, packet.constData(), size_t(packet.size()), 0,
                         reinterpret_cast<const sockaddr*>(&place), sizeof place),
                  packet.size());
        ASSERT_TRUE(isReadable(to.nDescriptor, kAtMostMs));
        to.session->receive(due->first);
        m_waiting.erase(due);
    }
}
