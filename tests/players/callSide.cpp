#include "tests/players/callSide.h"
#include <cmath>

namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kLoud = 0.3;
constexpr int kRate = soundCoder::SAMPLE_RATE;

} // namespace

void ToneVoice::read(short* frame)
{
    for (int i = 0; i < callSession::FRAME_SAMPLES; ++i, ++m_nSaid)
        frame[i] = m_hertz > 0 ? short(32767 * kLoud * std::sin(kTurn * m_hertz * double(m_nSaid) / kRate))
                               : short(0);
}

void ToneVoice::write(const short* frame)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (int i = 0; i < callSession::FRAME_SAMPLES; ++i)
        m_heard.push_back(float(frame[i]) / 32768);
}

kit::RecordedSound ToneVoice::heard(double seconds) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return kit::RecordedSound(m_heard, kRate).last(seconds, kRate);
}

void ToneVoice::forget()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_heard = {};
}

CallEnd::CallEnd(CallPhone& of, int number) : CallEnd(of, number, callSockets::open(), "127.0.0.1") {}

CallEnd::CallEnd(CallPhone& of, int number, std::unique_ptr<callSockets> sockets, const QByteArray& address)
    : phone(of), call(number), m_address(address)
{
    EXPECT_TRUE(sockets);
    port = sockets->port();
    negotiateAnew();
    phone.desk.add(call, std::make_unique<callSession>(std::move(sockets)));
}

void CallEnd::negotiateAnew()
{
    tagOwnMedia own;
    own.address = m_address;
    own.nPort = port;
    own.bLoopback = true;
    own.nSession = 1;
    negotiation = std::make_unique<callNegotiation>(own);
}

void CallEnd::apply(int through)
{
    tagAgreedSound agreed = negotiation->agreed();
    if (through != 0)
        agreed.nPort = agreed.nRtcpPort = through;
    callSession::tagParts parts = callSession::build(agreed);
    with([&](callSession& session) { session.agree(agreed, parts); });
}
