#include "players/callSession.h"
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr int kTones = -1;           // stands for a tone among what is to be played
constexpr qint64 kQuietUs = 3000000; // nothing came for so long
constexpr qint64 kLaneReserve = 80;  // samples: what the resampler keeps back
constexpr size_t kMaxLane = 4 * callSession::FRAME_SAMPLES;
constexpr int kTries = 6;
constexpr double kSmooth = 0.3;

} // namespace

callSession::callSession(std::unique_ptr<callSockets> sockets)
    : m_sockets(std::move(sockets)),
      m_reports(callCrypto::randomNumber<quint32>(), callCrypto::randomBytes(9).toBase64()),
      m_nSource(m_reports.source()), m_nSequence(callCrypto::randomNumber<quint16>() & 0x7fff),
      m_nTime(callCrypto::randomNumber<quint32>())
{
}

callSession::~callSession()
{
    if (m_peer.rtcp().sin_port != 0)
        sealedSendReport(wayOut(), m_reports.farewell());
}

callSession::tagParts callSession::build(const tagAgreedSound& agreed)
{
    tagParts parts;
    if (!agreed.bSound)
        return parts;
    parts.encoder = soundEncoder::make(agreed.send.eCodec, agreed.nPtime);
    parts.decoder = soundDecoder::make(agreed.send.eCodec);
    return parts;
}

void callSession::agree(const tagAgreedSound& agreed, tagParts& parts)
{
    m_agreed = agreed;
    m_keys.agree(agreed);
    const bool isSameCoder = m_encoder && parts.encoder && m_encoder->codec() == parts.encoder->codec() &&
                             m_encoder->ptime() == parts.encoder->ptime();
    if (!isSameCoder)
        std::swap(m_encoder, parts.encoder);
    if (!m_decoder || !parts.decoder || m_decoder->codec() != parts.decoder->codec())
        std::swap(m_decoder, parts.decoder);
    if (m_peer.agree(agreed))
        m_buffer.clear();
    if (!agreed.bSends)
        m_tones.clear();
    if (!agreed.bReceives) {
        m_buffer.clear();
        m_lane.clear();
        m_nBegan = 0;
    }
    m_bTalks = false;
}

const tagAgreedCodec* callSession::codecOf(int payload) const
{
    for (const tagAgreedCodec& codec : m_agreed.take) {
        if (codec.nPayload == payload)
            return &codec;
    }
    return nullptr;
}

void callSession::takePacket(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs)
{
    if (!m_agreed.bSound || !m_peer.is(from)) {
        ++m_nStrangers;
        return;
    }
    if (rtpPacket::isRtcp(packet, size)) {
        takeReport(packet, size, from, nowUs);
        return;
    }
    tagRtpHead head;
    int start = 0;
    int length = 0;
    const int opened = m_keys.open(packet, size, false);
    const bool isWhole = opened > 0 && rtpPacket::read(packet, opened, head, start, length);
    const tagAgreedCodec* codec = isWhole ? codecOf(head.nPayload) : nullptr;
    if (!codec || length == 0 || !m_peer.takes(from, head, nowUs)) {
        ++m_nStrangers;
        return;
    }
    bool begins = false;
    if (!m_peer.isSource(head.nSource, begins))
        return;
    if (begins)
        m_buffer.clear();
    m_nLastCame = nowUs;
    const tagSoundCodec* sound = soundCodec(codec->eCodec);
    m_reports.took(head, sound ? sound->nClock : m_agreed.send.nClock, nowUs, sound != nullptr);
    if (!m_agreed.bReceives)
        return;
    tagHeldPacket held;
    held.nPayload = sound ? head.nPayload : kTones;
    if (!sound) {
        m_buffer.putSilent(head.nSequence, held, nowUs);
        return;
    }
    held.content = QByteArray(reinterpret_cast<const char*>(packet) + start, length);
    m_buffer.put(head.nSequence, head.nTime, sound->nClock, held, nowUs);
}

void callSession::takeReport(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs)
{
    if (!m_agreed.bSound || !m_peer.isAt(from) || !rtpPacket::isRtcp(packet, size))
        return;
    const int opened = m_keys.open(packet, size, true);
    if (opened == 0)
        return;
    m_reports.read(packet, opened, nowUs);
    if (m_encoder)
        m_encoder->setLoss(m_reports.lossThereInPercent());
}

void callSession::receive(qint64 nowUs)
{
    unsigned char packet[rtpPacket::MAX_BYTES + secureRtp::MAX_MORE];
    for (const bool isReport : {false, true}) {
        for (int i = 0; i < MAX_TAKEN; ++i) {
            sockaddr_in from = {};
            qint64 ageUs = 0;
            const int size = m_sockets->take(isReport, packet, sizeof packet, from, ageUs);
            if (size == 0)
                break;
            if (size > 0 && isReport)
                takeReport(packet, size, from, nowUs - ageUs);
            else if (size > 0)
                takePacket(packet, size, from, nowUs - ageUs);
        }
    }
    if (m_agreed.bSound && m_agreed.nRtcpPort != 0 && m_reports.isDue(nowUs))
        sealedSendReport(wayOut(), m_reports.report(nowUs));
    if (m_agreed.bSound)
        m_way.step(wayOut(), nowUs);
}

void callSession::decode(const tagHeldPacket& packet)
{
    const tagAgreedCodec* codec = codecOf(packet.nPayload);
    if (packet.nPayload == kTones || !codec) {
        m_lane.insert(m_lane.end(), FRAME_SAMPLES, 0);
        return;
    }
    // The other side may change its mind among what was offered.
    if (!m_decoder || m_decoder->codec() != codec->eCodec)
        m_decoder = soundDecoder::make(codec->eCodec);
    if (m_decoder)
        m_decoder->decode(packet.content, m_lane);
}

void callSession::play(short* samples, qint64 nowUs)
{
    if (m_lane.empty() && m_agreed.bReceives)
        m_lane.insert(m_lane.end(), kLaneReserve, 0);
    for (int i = 0; i < kTries && m_agreed.bReceives && m_lane.size() < FRAME_SAMPLES; ++i) {
        tagHeldPacket packet;
        const jitterBuffer::TAKEN taken = m_buffer.take(nowUs, packet);
        if (taken == jitterBuffer::TAKEN::NOTHING)
            break;
        if (taken == jitterBuffer::TAKEN::PACKET)
            decode(packet);
        else if (m_decoder)
            m_decoder->conceal(m_lane);
    }
    const size_t count = std::min<size_t>(m_lane.size(), FRAME_SAMPLES);
    std::copy_n(m_lane.begin(), count, samples);
    std::fill(samples + count, samples + FRAME_SAMPLES, short(0));
    m_lane.erase(m_lane.begin(), m_lane.begin() + qptrdiff(count));
    // A packet may hold more sound than its time says.
    if (m_lane.size() > kMaxLane)
        m_lane.resize(kMaxLane);
}

void callSession::sendPacket(int payload, bool marker, quint32 time, const unsigned char* content, int size)
{
    unsigned char packet[rtpPacket::MAX_BYTES + secureRtp::MAX_MORE];
    if (size > rtpPacket::MAX_BYTES - rtpPacket::HEAD_BYTES)
        return;
    rtpPacket::write({payload, marker, m_nSequence++, time, m_nSource}, packet);
    memcpy(packet + rtpPacket::HEAD_BYTES, content, size_t(size));
    if (!sealedSend(wayOut(), packet, rtpPacket::HEAD_BYTES + size))
        return;
    m_way.sent();
    m_reports.sent(time, size);
}

void callSession::sendTones(const QList<toneEvents::tagEvent>& events)
{
    for (const toneEvents::tagEvent& event : events) {
        if (event.bFirst)
            m_nToneTime = m_nTime;
        sendPacket(m_agreed.nSendTones, event.bFirst, m_nToneTime, event.content, sizeof event.content);
    }
}

void callSession::send(const short* samples)
{
    const int clock = m_agreed.send.nClock;
    if (!m_agreed.bSends || !m_encoder) {
        m_bTalks = false;
        m_nTime += quint32(FRAME_MS * clock / 1000);
        return;
    }
    const bool hasTone = m_tones.isBusy();
    if (hasTone) {
        const QList<toneEvents::tagEvent> events = m_tones.next(FRAME_MS, m_agreed.nTonesClock);
        sendTones(events);
        m_encoder->forget();
        m_bTalks = false;
        m_nTime += quint32(FRAME_MS * clock / 1000);
        return;
    }
    if (!m_bTalks)
        m_nPacketTime = m_nTime;
    for (const QByteArray& content : m_encoder->encode(samples, FRAME_SAMPLES)) {
        sendPacket(m_agreed.send.nPayload, !m_bTalks, m_nPacketTime,
                   reinterpret_cast<const unsigned char*>(content.constData()), int(content.size()));
        m_nPacketTime += quint32(m_encoder->ptime() * clock / 1000);
        m_bTalks = true;
    }
    m_nTime += quint32(FRAME_MS * clock / 1000);
}

// What is heard, as a person judges it: loss takes most of it, and then the time the sound is under way
// (after the E-model, ITU-T G.107, in short).
int callSession::quality(qint64 nowUs)
{
    if (!m_agreed.bSound || !m_agreed.bReceives)
        return -1;
    if (m_nBegan == 0)
        m_nBegan = nowUs;
    const qint64 good = m_buffer.counts().nPlayed - m_seen.nGood;
    const qint64 bad = m_buffer.counts().nLost - m_seen.nBad;
    m_seen = {m_buffer.counts().nPlayed, m_buffer.counts().nLost};
    if (nowUs - std::max(m_nLastCame, m_nBegan) > kQuietUs)
        return 0;
    if (good + bad == 0)
        return m_nLastCame == 0 ? -1 : 4;
    m_loss += (100.0 * double(bad) / double(good + bad) - m_loss) * kSmooth;
    const double delayMs = m_buffer.delayMs() + m_reports.roundTripMs() / 2.0;
    const double late = delayMs < 160 ? delayMs / 40 : (delayMs - 120) / 10;
    const double heard = 94 - late - 2.5 * m_loss;
    static constexpr int kSteps[] = {50, 60, 70, 80};
    return int(std::count_if(std::begin(kSteps), std::end(kSteps), [&](int step) { return heard >= step; }));
}
