#include "tests/sip/badWay.h"
#include <utility>

namespace {

constexpr int kLookMs = 2;
// Of a hundred messages.
constexpr unsigned kLost = 30, kLate = 10, kDoubled = 10;

} // namespace

BadWay::BadWay(uint32_t phonePort, uint32_t serverPort)
    : m_nPhone(phonePort), m_thread([this, serverPort] {
          while (!m_bEnds) {
              carry(m_front, m_back, serverPort, m_fromPhone);
              carry(m_back, m_front, m_nPhone, m_fromServer);
          }
      })
{
}

BadWay::~BadWay()
{
    m_bEnds = true;
    m_thread.join();
}

void BadWay::carry(UdpPeer& in, UdpPeer& out, uint32_t port, QByteArray& late)
{
    const QByteArray message = in.receive(kLookMs);
    if (message.isEmpty() || m_bCut)
        return;
    if (&in == &m_front && !m_nPhone)
        m_nPhone = in.lastPort();
    const unsigned chance = m_bBad ? std::uniform_int_distribution<unsigned>(0, 99)(m_random) : 99;
    if (chance < kLost) {
        ++m_nLost;
        return;
    }
    if (chance < kLost + kLate && late.isEmpty()) {
        ++m_nLate;
        late = message;
        return;
    }
    out.send(message, port);
    if (chance < kLost + kLate + kDoubled) {
        ++m_nDoubled;
        out.send(message, port);
    }
    if (!late.isEmpty())
        out.send(std::exchange(late, QByteArray()), port);
}
